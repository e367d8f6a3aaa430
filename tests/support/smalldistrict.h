#pragma once

#include "support/testdistrict.h"

namespace support {

/// Fills a district with a handful of rows that look-ups and run searches tell apart:
///
/// | Run | Description | School | Trip type | Route | |
/// |---|---|---|---|---|---|
/// | 101-AM | Oak morning | OAK | AM | R1: B7, Smith, Adams | stops at OAK |
/// | 102-AM | Pine 100% | PINE | AM | R2: nothing assigned | red, stops at PINE and OAK |
/// | 103-PM | | ASH | PM | none | nothing but its id |
/// | 201-PM | Oak [late] | OAK | PM | none | stops at OAK, one stop of trip type AM |
void fillSmall(const TestDistrict& district);

}  // namespace support
