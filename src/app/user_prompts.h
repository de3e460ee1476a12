#pragma once

#include <cstdint>

// Everything a page asks the user, so that page logic can be run with scripted answers.
class SMUserPrompts {
 public:
  virtual ~SMUserPrompts() = default;
  // OK/Cancel with Cancel as default; the two texts are shown as two paragraphs. True on OK.
  virtual bool ConfirmBox(uint32_t textId1, uint32_t textId2, uint32_t captionId) = 0;
  // An error the user must see, with the error icon.
  virtual void ErrorBox(uint32_t textId, uint32_t captionId) = 0;
};
