#pragma once

#include "ZellOfficeKit/Export.h"

#include <cstdint>

// The limits at which a workbook changes its ways. The defaults are those of the format; a host or a test may
// lower what the format sets, never raise it.
namespace ZellOfficeKit {

struct OfficeLimits
{
    int rows = 1048576;                      // rows of one worksheet
    int columns = 16384;                     // columns of one worksheet
    int links = 65530;                       // hyperlinks of one worksheet
    int text_units = 32767;                  // UTF-16 units of one cell
    int init_failure_delay_ms = 1000;        // how long a failing Init takes at least
    std::uint64_t zip64_above = 0xF0000000;  // bytes of sheet XML above which the zip gets 64-bit sizes
    std::uint64_t spare_bytes = 1U << 20U;   // free bytes of the work folder that packing must not need
};

// Takes effect for workbooks started afterwards. Values out of range are brought into it. Any thread.
ZELLOFFICEKIT_API void SetOfficeLimits(const OfficeLimits& limits);
ZELLOFFICEKIT_API OfficeLimits CurrentOfficeLimits();

}  // namespace ZellOfficeKit
