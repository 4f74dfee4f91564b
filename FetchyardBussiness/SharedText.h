#pragma once

#include <mutex>
#include <string>
#include <utility>

namespace FetchyardBussiness {

// A text of a record that a running task changes while others read it. Copies like a string.
class SharedText
{
public:
    SharedText() = default;
    SharedText(std::string text) : text_(std::move(text)) {}
    SharedText(const SharedText& other) : text_(other.Get()) {}
    SharedText& operator=(const SharedText& other)
    {
        Set(other.Get());
        return *this;
    }
    SharedText& operator=(const std::string& text)
    {
        Set(text);
        return *this;
    }
    ~SharedText() = default;

    std::string Get() const
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return text_;
    }
    operator std::string() const { return Get(); }

private:
    void Set(std::string text)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        text_.swap(text);
    }

    mutable std::mutex mutex_;
    std::string text_;
};

}  // namespace FetchyardBussiness
