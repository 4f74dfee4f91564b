#pragma once

#include <functional>

// Stands in for the picture loader: addresses that begin with "/good" have a picture of 200 by 150, "/broken"
// has bytes that are none, all others fail with HTTP status 404.
namespace golden {

// Runs before each fetch with its number, from 1 on.
void OnFetch(std::function<void(int)> action);

}  // namespace golden
