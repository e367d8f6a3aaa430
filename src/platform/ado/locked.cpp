#include "platform/ado/locked.h"

#include "platform/base/ports.h"
#include "platform/store/database.h"

namespace ado {

bool unlessLocked(const std::function<void()>& work, const std::string& text,
                  const std::string& title) {
    try {
        work();
        return true;
    } catch (const store::StoreError& error) {
        if (error.fault() != store::Fault::Locked) {
            throw;
        }
    }
    base::MsgBox(text, title, base::MsgIcon::Exclamation);
    return false;
}

}  // namespace ado
