#pragma once

namespace hivesweep {

// The environment's COLUMNS; 0 when it holds no number from 1 to 9999.
int ColumnsOfEnvironment();

} // namespace hivesweep
