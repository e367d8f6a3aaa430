#include "tools/extract/read/extract.h"

#include <fmt/format.h>
#include <malloc.h>
#include <osmium/io/opl_input.hpp>
#include <osmium/io/pbf_input.hpp>
#include <osmium/io/reader.hpp>
#include <osmium/osm.hpp>
#include <osmium/thread/pool.hpp>

#include "platform/base/error.h"
#include "tools/extract/read/collector.h"

namespace tools::extract {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const fs::path& file, std::string_view why) {
    throw base::RunTimeError(base::errors::PathFileAccess,
                             fmt::format("{} {}", file.string(), why));
}

/// A name never begins a transfer over the net: the whole path is given.
osmium::io::File opened(const fs::path& file) {
    const std::string name = file.filename().string();
    const char* const format = name.ends_with(".pbf")   ? "pbf"
                               : name.ends_with(".opl") ? "opl"
                                                        : nullptr;
    std::error_code error;
    if (!fs::is_regular_file(file, error)) {
        throw base::RunTimeError(base::errors::FileNotFound,
                                 fmt::format("There is no file {}.", file.string()));
    }
    if (format == nullptr) {
        refuse(file, "is no extract that can be read: its name does not end in .osm.pbf.");
    }
    if (fs::file_size(file, error) == 0) {
        refuse(file, "is empty.");
    }
    return osmium::io::File{fs::absolute(file).string(), format};
}

Tags tagsOf(const osmium::OSMObject& thing) {
    Tags tags;
    for (const osmium::Tag& tag : thing.tags()) {
        tags.add(tag.key(), tag.value());
    }
    return tags;
}

void take(const osmium::Node& node, Collector& collector) {
    if (node.location().valid()) {
        collector.node(node.id(), {node.location().lat(), node.location().lon()}, tagsOf(node));
    }
}

void take(const osmium::Way& way, Collector& collector) {
    std::vector<std::int64_t> nodes;
    nodes.reserve(way.nodes().size());
    for (const osmium::NodeRef& node : way.nodes()) {
        nodes.push_back(node.ref());
    }
    collector.way(way.id(), std::move(nodes), tagsOf(way));
}

void take(const osmium::Relation& relation, Collector& collector) {
    std::vector<Member> members;
    for (const osmium::RelationMember& member : relation.members()) {
        if (member.type() != osmium::item_type::relation) {
            members.push_back(
                {member.role(), member.ref(), member.type() == osmium::item_type::way});
        }
    }
    collector.relation(relation.id(), members, tagsOf(relation));
}

void take(const osmium::memory::Buffer& buffer, Collector& collector) {
    for (const auto& thing : buffer.select<osmium::OSMObject>()) {
        if (thing.deleted()) {
            continue;
        }
        switch (thing.type()) {
            case osmium::item_type::node:
                take(static_cast<const osmium::Node&>(thing), collector);
                break;
            case osmium::item_type::way:
                take(static_cast<const osmium::Way&>(thing), collector);
                break;
            case osmium::item_type::relation:
                take(static_cast<const osmium::Relation&>(thing), collector);
                break;
            default:
                break;
        }
    }
}

void read(const fs::path& file, Collector& collector, const ReadProgress& progress) {
    constexpr int Threads = 2;
    constexpr std::size_t Waiting = 8;
    osmium::thread::Pool pool{Threads, Waiting};
    osmium::io::Reader reader{opened(file), osmium::osm_entity_bits::nwr, pool,
                              osmium::io::read_meta::no};
    while (const auto buffer = reader.read()) {
        take(buffer, collector);
        progress(static_cast<std::int64_t>(reader.offset()),
                 static_cast<std::int64_t>(reader.file_size()));
    }
    reader.close();
}

Extract collected(std::span<const fs::path> files, const std::optional<DegreeBox>& box,
                  const ReadProgress& progress) {
    Collector collector(box);
    for (const fs::path& file : files) {
        try {
            collector.begin();
            read(file, collector, progress);
        } catch (const base::RunTimeError&) {
            throw;
        } catch (const Unsorted&) {
            refuse(file, "is not sorted: its nodes must stand before its ways.");
        } catch (const std::exception& error) {
            refuse(file, fmt::format("is cut off or damaged: {}.", error.what()));
        }
    }
    return collector.finish();
}

}  // namespace

Extract readExtracts(std::span<const fs::path> files, const std::optional<DegreeBox>& box,
                     const ReadProgress& progress) {
    // Lists that grow and go give their memory back at once, and so, below, does the reader.
    constexpr int Large = 1 << 17;  // bytes
    ::mallopt(M_MMAP_THRESHOLD, Large);
    Extract extract = collected(files, box, progress);
    ::malloc_trim(0);
    return extract;
}

}  // namespace tools::extract
