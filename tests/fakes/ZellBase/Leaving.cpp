#include "ZellBase/Leaving.h"

namespace Zell::Base::details {

// The threads of the contract tests are joined before they leave.
bool IsProcessLeaving()
{
    return false;
}

void KeepForGood(std::shared_ptr<void> /*object*/) {}

}  // namespace Zell::Base::details
