#include "ZellBase/Task.h"

namespace Zell::Base {

CTask::~CTask() = default;
CCancelableTask::~CCancelableTask() = default;

}  // namespace Zell::Base
