#include "reports/printing/printservice.h"

#include <memory>

#include <cups/cups.h>
#include <dlfcn.h>

namespace printing {

namespace {

constexpr auto NoService = "There is no print service on this computer.";
constexpr auto NoAnswer = "The print service does not answer.";
constexpr int PatienceMs = 5'000;

/// The library of the print service, which a desktop without printers may lack. It stays once it is
/// there: a thread may still be in it.
class Library {
public:
    static const Library& instance() {
        static const Library library;
        return library;
    }
    [[nodiscard]] bool isThere() const { return handle_ != nullptr; }
    template <class Function>
    [[nodiscard]] Function* find(const char* name) const {
        return reinterpret_cast<Function*>(dlsym(handle_, name));
    }

private:
    Library() : handle_(dlopen("libcups.so.2", RTLD_NOW | RTLD_LOCAL)) {}

    void* handle_;
};

using Connection = std::unique_ptr<http_t, decltype(&httpClose)>;

Connection connect(const Library& library) {
    const auto server = library.find<decltype(cupsServer)>("cupsServer")();
    const auto port = library.find<decltype(ippPort)>("ippPort")();
    const auto encryption = library.find<decltype(cupsEncryption)>("cupsEncryption")();
    return {library.find<decltype(httpConnect2)>("httpConnect2")(
                server, port, nullptr, AF_UNSPEC, encryption, 1, PatienceMs, nullptr),
            library.find<decltype(httpClose)>("httpClose")};
}

std::optional<std::vector<std::string>> systemPrinters() {
    const Library& library = Library::instance();
    if (!library.isThere()) {
        return std::nullopt;
    }
    const Connection service = connect(library);
    if (!service) {
        return std::nullopt;
    }
    cups_dest_t* found = nullptr;
    const int count = library.find<decltype(cupsGetDests2)>("cupsGetDests2")(service.get(), &found);
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        names.emplace_back(found[i].name);
    }
    library.find<decltype(cupsFreeDests)>("cupsFreeDests")(count, found);
    return names;
}

std::string printBySystem(const PrintJob& job) {
    const Library& library = Library::instance();
    if (!library.isThere()) {
        return NoService;
    }
    const Connection service = connect(library);
    if (!service) {
        return NoAnswer;
    }
    cups_option_t* options = nullptr;
    int count = 0;
    for (const auto& [name, value] : job.options) {
        count = library.find<decltype(cupsAddOption)>("cupsAddOption")(name.c_str(), value.c_str(),
                                                                       count, &options);
    }
    const int id = library.find<decltype(cupsPrintFile2)>("cupsPrintFile2")(
        service.get(), job.printer.c_str(), job.file.c_str(), job.title.c_str(), count, options);
    library.find<decltype(cupsFreeOptions)>("cupsFreeOptions")(count, options);
    return id != 0 ? std::string()
                   : library.find<decltype(cupsLastErrorString)>("cupsLastErrorString")();
}

Service& replacement() {
    static Service service;
    return service;
}

}  // namespace

Service service() {
    return replacement().print ? replacement() : Service{&systemPrinters, &printBySystem};
}

void setService(Service service) { replacement() = std::move(service); }

}  // namespace printing
