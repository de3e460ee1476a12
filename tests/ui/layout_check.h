#pragma once

#include <windows.h>

#include <string>
#include <vector>

// What is wrong with the layout of one page or dialog of the program, seen from another
// process: a visible control whose text, measured with the dialog font, needs more room than
// the control has, or a list cell whose text is wider than its column; a control that reaches
// outside its parent's client area; two visible siblings that overlap. One line per fault, naming
// the control by id, class and text.
std::vector<std::string> LayoutProblems(HWND container);
// The texts of the container's visible controls that show one, without the links' markers.
std::vector<std::wstring> ShownTexts(HWND container);
