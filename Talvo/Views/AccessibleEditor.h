#pragma once

namespace Talvo {

/// Teaches assistive technology to write into the text fields, which Qt 6.4 only lets it read,
/// keeps the characters of masked fields from it, and tells it what each text of a message is.
/// Once, at the start of the program, GUI thread.
void installAccessibleEditors();

} // namespace Talvo
