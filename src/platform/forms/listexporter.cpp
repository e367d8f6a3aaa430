#include "platform/forms/listexporter.h"

namespace forms {

ListExporter& listExporter() {
    static ListExporter exporter;
    return exporter;
}

}  // namespace forms
