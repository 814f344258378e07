#pragma once

namespace Talvo {

/// Teaches assistive technology to write into the text fields, which Qt 6.4 only lets it read, and
/// keeps the characters of masked fields from it. Once, at the start of the program, GUI thread.
void installAccessibleEditors();

} // namespace Talvo
