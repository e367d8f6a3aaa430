#include "platform/store/base/database.h"

#include "platform/base/lookup.h"

namespace store {

int numberOf(Fault fault) {
    static constexpr std::pair<Fault, int> Numbers[] = {
        {Fault::Missing, 3024},     {Fault::NotADatabase, 3343}, {Fault::OtherKind, 3274},
        {Fault::Damaged, 3049},     {Fault::Locked, 3260},       {Fault::Replaced, 3043},
        {Fault::Network, 3050},     {Fault::ReadOnly, 3027},     {Fault::Full, 3183},
        {Fault::Unreachable, 3146}, {Fault::Lost, 3151},         {Fault::GivenUp, 3059},
        {Fault::Constraint, 3022},  {Fault::Statement, 3075}};
    return base::lookUp(Numbers, fault, -2147467259);
}

StoreError::StoreError(Fault fault, const std::string& description)
    : base::RunTimeError(numberOf(fault), description), fault_(fault) {}

}  // namespace store
