#pragma once

#include <windows.h>

#include "app/user_prompts.h"
#include "l10n/string_table.h"
#include "platform/system.h"

// The questions of pages and dialogs as the system's message boxes, in the user's language.
class SMMessageBoxPrompts : public SMUserPrompts {
 public:
  // Errors are owned by `owner` (the page or dialog that reports them); confirmations by the
  // active window.
  SMMessageBoxPrompts(SMSystem& system, SMStringTable& strings, HWND owner)
      : system_(system), strings_(strings), owner_(owner) {}

  bool ConfirmBox(TextId text1, TextId text2, TextId caption) override;
  void ErrorBox(TextId text, TextId caption) override;

 protected:
  SMSystem& system_;
  SMStringTable& strings_;
  HWND owner_;
};
