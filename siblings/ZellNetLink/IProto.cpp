#include "ZellNetLink/IProto.h"

namespace ZellNetLink {

IProto::~IProto() = default;

}  // namespace ZellNetLink
