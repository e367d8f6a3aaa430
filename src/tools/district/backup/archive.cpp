#include "tools/district/backup/archive.h"

#include <QCryptographicHash>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <utility>

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "data/schema/schema.h"
#include "platform/base/notcopied.h"
#include "platform/base/text.h"
#include "tools/district/archive/archivereader.h"
#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

constexpr const char* SumsName = "B2SUMS";
constexpr std::size_t BlockSize = 1 << 18;
constexpr int OwnerReadsAndWrites = 0600;

/// The hash of which `b2sum` writes the sums.
class Sum {
public:
    void add(std::string_view bytes) {
        hash_.addData(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    }
    [[nodiscard]] std::string text() const { return hash_.result().toHex().toStdString(); }

private:
    QCryptographicHash hash_{QCryptographicHash::Blake2b_512};
};

/// Each line a sum, two blanks, a name.
std::map<std::string, std::string> sumsByName(const std::string& text) {
    std::map<std::string, std::string> sums;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (const auto blanks = line.find("  "); blanks != std::string::npos) {
            sums[line.substr(blanks + 2)] = line.substr(0, blanks);
        }
    }
    return sums;
}

void requireWritten(archive& one, la_ssize_t code) {
    if (code < ARCHIVE_OK) {
        refuse(fmt::format("The back-up cannot be written: {}.", archive_error_string(&one)));
    }
}

/// A new file that only its owner reads.
class PrivateFile : private base::NotCopied {
public:
    explicit PrivateFile(fs::path path)
        : path_(std::move(path)),
          handle_(
              ::open(path_.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, OwnerReadsAndWrites)) {
        require(handle_ >= 0);
    }
    ~PrivateFile() { ::close(handle_); }

    void append(std::string_view bytes) {
        while (!bytes.empty()) {
            const auto written = ::write(handle_, bytes.data(), bytes.size());
            require(written > 0);
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
    }
    void sync() { require(::fsync(handle_) == 0); }

private:
    void require(bool isWell) const {
        if (!isWell) {
            refuse(fmt::format("{} cannot be written: {}.", path_.string(), std::strerror(errno)));
        }
    }

    fs::path path_;
    int handle_;
};

std::string sumOfUnpacked(ArchiveReader& reader, const fs::path& to, const BytesRead& read) {
    Sum sum;
    PrivateFile file(to);
    for (auto block = reader.block(); !block.empty(); block = reader.block()) {
        sum.add(block);
        file.append(block);
        read(static_cast<std::int64_t>(block.size()));
    }
    file.sync();
    return sum.text();
}

std::string textOf(ArchiveReader& reader) {
    constexpr std::size_t Longest = 1 << 16;
    std::string text;
    for (auto block = reader.block(); !block.empty() && text.size() < Longest;
         block = reader.block()) {
        text += block;
    }
    return text;
}

}  // namespace

std::optional<fs::path> nameInArchive(const Folders& folders, const fs::path& file) {
    std::size_t longest = 0;
    fs::path name;
    const Folders layout;
    for (const auto& [from, to] : {std::pair{folders.data(), layout.data()},
                                   {folders.programs(), layout.programs()},
                                   {folders.common(), layout.common()}}) {
        const fs::path below = file.lexically_relative(from);
        if (!below.empty() && *below.begin() != ".." && from.native().size() > longest) {
            longest = from.native().size();
            name = to / below;
        }
    }
    return isNameBeside(name) ? std::optional(name) : std::nullopt;
}

bool isNameBeside(const fs::path& name) {
    const Folders layout;
    const bool isBelow =
        !name.empty() &&
        std::ranges::any_of(std::array{layout.data(), layout.programs(), layout.common()},
                            [&](const fs::path& folder) { return *name.begin() == folder; });
    const std::string file = name.filename().string();
    const bool isDatabases = std::ranges::any_of(data::AllDatabaseFiles, [&](auto one) {
        const std::string_view database = data::fileName(one);
        return base::equalsNoCase(file.substr(0, database.size()), database);
    });
    return isBelow && !isDatabases && name.has_filename() && name != *name.begin() &&
           name == name.lexically_normal();
}

ArchiveWriter::ArchiveWriter(int file)
    : archive_(archive_write_new(), [](archive* one) { archive_write_free(one); }) {
    archive& one = *archive_;
    requireWritten(one, archive_write_add_filter_zstd(&one));
    requireWritten(one, archive_write_set_format_pax_restricted(&one));
    requireWritten(one, archive_write_open_fd(&one, file));
}

ArchiveWriter::~ArchiveWriter() = default;

void ArchiveWriter::beginEntry(const std::string& name, std::int64_t size) {
    const std::unique_ptr<archive_entry, void (*)(archive_entry*)> entry(archive_entry_new(),
                                                                         archive_entry_free);
    archive_entry_set_pathname(entry.get(), name.c_str());
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), OwnerReadsAndWrites);
    archive_entry_set_size(entry.get(), size);
    archive_entry_set_mtime(entry.get(), std::time(nullptr), 0);
    requireWritten(*archive_, archive_write_header(archive_.get(), entry.get()));
}

void ArchiveWriter::append(std::string_view bytes) {
    requireWritten(*archive_, archive_write_data(archive_.get(), bytes.data(), bytes.size()));
}

void ArchiveWriter::add(const std::string& name, const fs::path& file, const BytesRead& read) {
    Sum sum;
    std::ifstream in(file, std::ios::binary);
    beginEntry(name, static_cast<std::int64_t>(fs::file_size(file)));
    std::array<char, BlockSize> buffer{};
    while (in.read(buffer.data(), buffer.size()) || in.gcount() > 0) {
        const std::string_view block{buffer.data(), static_cast<std::size_t>(in.gcount())};
        sum.add(block);
        append(block);
        read(static_cast<std::int64_t>(block.size()));
    }
    if (in.bad()) {
        refuse(fmt::format("{} cannot be read.", file.string()));
    }
    sums_ += fmt::format("{}  {}\n", sum.text(), name);
}

void ArchiveWriter::addText(const std::string& name, std::string_view text) {
    Sum sum;
    sum.add(text);
    beginEntry(name, static_cast<std::int64_t>(text.size()));
    append(text);
    sums_ += fmt::format("{}  {}\n", sum.text(), name);
}

void ArchiveWriter::finish() {
    beginEntry(SumsName, static_cast<std::int64_t>(sums_.size()));
    append(sums_);
    requireWritten(*archive_, archive_write_close(archive_.get()));
}

void unpackArchive(const fs::path& file,
                   const std::function<fs::path(const std::string& name)>& target,
                   const BytesRead& read) {
    ArchiveReader reader(file, ArchiveReader::Kind::ZstdTar);
    std::map<std::string, std::string> found;
    std::map<std::string, std::string> wanted;
    for (std::string name = reader.next(); !name.empty(); name = reader.next()) {
        if (name == SumsName) {
            wanted = sumsByName(textOf(reader));
        } else if (const fs::path to = target(name); !to.empty()) {
            found[name] = sumOfUnpacked(reader, to, read);
        }
    }
    for (const auto& [name, sum] : found) {
        if (wanted[name] != sum) {
            refuse(fmt::format("{} in {} was changed or cut short: its checksum is another one.",
                               name, file.string()));
        }
    }
}

}  // namespace tools::district
