#pragma once

#include <cstdint>
#include <vector>

#include "app/user_prompts.h"

// Answers every confirmation with one scripted answer and records what the user was shown.
class RecordingPrompts : public SMUserPrompts {
 public:
  explicit RecordingPrompts(bool confirm = true) : confirm_(confirm) {}
  bool ConfirmBox(uint32_t textId1, uint32_t textId2, uint32_t captionId) override {
    confirmations.push_back({textId1, textId2, captionId});
    return confirm_;
  }
  void ErrorBox(uint32_t textId, uint32_t captionId) override {
    errors.push_back({textId, captionId});
  }

  std::vector<std::vector<uint32_t>> confirmations;
  std::vector<std::vector<uint32_t>> errors;

 private:
  bool confirm_;
};
