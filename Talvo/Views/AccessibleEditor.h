#pragma once

namespace Talvo {

/// Teaches assistive technology to write into the text fields, which Qt 6.4 only lets it read,
/// keeps the characters of masked fields from it, tells it what each text of a message is, and
/// where each character stands. Once, at the start of the program, GUI thread.
void installAccessibleEditors();

} // namespace Talvo
