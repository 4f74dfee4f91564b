#pragma once

#include "ZellBase/Export.h"

namespace Zell::Base {

// A piece of work that somebody else runs.
class ZELLBASE_API CTask
{
public:
    CTask() = default;
    CTask(const CTask&) = delete;
    CTask& operator=(const CTask&) = delete;
    virtual ~CTask();
    virtual void Exec() = 0;
};

// Work that can be made void while it waits in a queue: after Cancel, Exec does nothing.
class ZELLBASE_API CCancelableTask : public CTask
{
public:
    ~CCancelableTask() override;
    virtual void Cancel() = 0;
};

}  // namespace Zell::Base
