#pragma once

namespace ZellOfficeKit {

// While it lives, numbers that this thread prints have a decimal point. The workbook library prints margins
// and widths with printf; under a locale with a decimal comma, which a desktop program sets at its start, no
// reader could open the workbook.
class CNumberLocale
{
public:
    CNumberLocale();
    CNumberLocale(const CNumberLocale&) = delete;
    CNumberLocale& operator=(const CNumberLocale&) = delete;
    ~CNumberLocale();

private:
    void* own_ = nullptr;  // the platform's handles
    void* previous_ = nullptr;
};

}  // namespace ZellOfficeKit
