#include "platform/store/base/database.h"

namespace store {

int numberOf(Fault fault) {
    switch (fault) {
        case Fault::Missing:
            return 3024;
        case Fault::NotADatabase:
            return 3343;
        case Fault::OtherKind:
            return 3274;
        case Fault::Damaged:
            return 3049;
        case Fault::Locked:
            return 3260;
        case Fault::Replaced:
            return 3043;
        case Fault::Network:
            return 3050;
        case Fault::ReadOnly:
            return 3027;
        case Fault::Full:
            return 3183;
        case Fault::Unreachable:
            return 3146;
        case Fault::Lost:
            return 3151;
        case Fault::GivenUp:
            return 3059;
        case Fault::Constraint:
            return 3022;
        case Fault::Statement:
            return 3075;
        case Fault::Other:
            break;
    }
    return -2147467259;
}

StoreError::StoreError(Fault fault, const std::string& description)
    : base::RunTimeError(numberOf(fault), description), fault_(fault) {}

}  // namespace store
