#include "platform/forms/listexporter.h"

namespace forms {

ListExporter& listExporter() {
    static ListExporter exporter;
    return exporter;
}

ListExporter& listPrinter() {
    static ListExporter printer;
    return printer;
}

}  // namespace forms
