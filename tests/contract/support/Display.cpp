#include "support/Display.h"

#include "FetchyardBussiness/Platform/DisplayScale.h"

namespace {

FetchyardBussiness::Platform::DisplayDpi display;

}

namespace contract {

void SetDisplayDpi(unsigned int x, unsigned int y)
{
    display = {x, y};
}

}  // namespace contract

namespace FetchyardBussiness::Platform {

DisplayDpi PrimaryDisplayDpi()
{
    return display;
}

}  // namespace FetchyardBussiness::Platform
