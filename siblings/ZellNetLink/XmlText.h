#pragma once

namespace ZellNetLink {

// Elements within elements, the root counted; deeper documents are neither read nor written.
inline constexpr int kMaxXmlDepth = 512;

}  // namespace ZellNetLink
