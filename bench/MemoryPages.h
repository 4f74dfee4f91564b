#pragma once

#include "FetchyardLogical/ReportData.h"

// Pages for benchmarks, without a server: one page of rows, handed over again and again.
namespace FetchyardBench {

struct PagePlan
{
    int rows = 1000000;
    int rows_in_page = 1000;
    int columns = 10;
};

// The plan that the page call follows from now on.
void SetPagePlan(const PagePlan& plan);
// One page of the plan, as a server would deliver it.
FetchyardLogical::ExportSheet MakeSheet(const PagePlan& plan, int page_index);

}  // namespace FetchyardBench
