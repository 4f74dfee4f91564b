#pragma once

#include <cstddef>

namespace Zell::Base::details {

// Closes a descriptor at the end of its scope, unless it was closed before.
class Descriptor
{
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { Close(); }

    int Get() const { return number_; }
    bool IsOpen() const { return number_ >= 0; }
    // 0 or the system's error.
    int Close();

private:
    int number_;
};

// Goes on after signals and partial writes. 0 or the system's error; done counts what was written.
int WriteAll(int descriptor, const char* data, std::size_t size, std::size_t& done);

}  // namespace Zell::Base::details
