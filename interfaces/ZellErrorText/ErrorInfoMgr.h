#pragma once

#include "ZellBase/Error.h"
#include "ZellErrorText/Export.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QString>

namespace ZellErrorText {

// An error code, wrapped for the look-up.
class ZELLERRORTEXT_API CErrorCodeEvent
{
public:
    explicit CErrorCodeEvent(const Zell::Base::Error::ErrorCode& code);
    CErrorCodeEvent(const CErrorCodeEvent&) = default;
    CErrorCodeEvent& operator=(const CErrorCodeEvent&) = default;
    virtual ~CErrorCodeEvent();

    Zell::Base::Error::ErrorCode Code() const;

private:
    Zell::Base::Error::ErrorCode code_;
};

// The table of message texts. Any thread. A code without a text of its own gives a text that names the two
// numbers; (0, 0) gives an empty one.
class ZELLERRORTEXT_API CErrorInfoMgr
{
public:
    static CErrorInfoMgr& UiInstance();

    QString GetErrorInfoByModuleAndCode(int module, int code);
    QString GetErrorInfoByCode(const CErrorCodeEvent& event);

private:
    CErrorInfoMgr() = default;
};

}  // namespace ZellErrorText
