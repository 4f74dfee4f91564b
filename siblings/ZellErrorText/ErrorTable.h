#pragma once

namespace ZellErrorText {

// The text of a code; null if the table has none. Module 0 is not in the table.
const char* FindErrorText(int module, int code);
// What a module's codes are about, for a code without a text of its own; null for an unknown module.
const char* FindModuleText(int module);

}  // namespace ZellErrorText
