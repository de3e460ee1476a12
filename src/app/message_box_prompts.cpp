#include "app/message_box_prompts.h"

#include <optional>
#include <string>

#include "app/dialog_object.h"
#include "app/page_text.h"

namespace {

const wchar_t* OrNull(const std::optional<std::wstring>& text) {
  return text ? text->c_str() : nullptr;
}

}  // namespace

bool SMMessageBoxPrompts::ConfirmBox(TextId text1, TextId text2, TextId caption) {
  std::optional<std::wstring> text = WideText(strings_, text1);
  AppendParagraph(text, WideText(strings_, text2));
  // The language is asked afresh at every question.
  int answer = MessageBoxW(GetActiveWindow(), OrNull(text), OrNull(WideText(strings_, caption)),
                           ConfirmBoxFlags(IsRightToLeftUser(system_)));
  return answer == IDOK;
}

void SMMessageBoxPrompts::ErrorBox(TextId text, TextId caption) {
  MessageBoxW(owner_, OrNull(WideText(strings_, text)), OrNull(WideText(strings_, caption)),
              kErrorBoxFlags);
}
