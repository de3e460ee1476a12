#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <optional>
#include <utility>
#include <vector>

#include "app/user_prompts.h"

// Answers confirmations from a script and records everything the user was shown.
class ScriptedPrompts : public SMUserPrompts {
 public:
  explicit ScriptedPrompts(std::vector<bool> answers = {}) : answers_(std::move(answers)) {}
  bool ConfirmBox(uint32_t textId1, uint32_t textId2, uint32_t captionId) override {
    asked.push_back({textId1, textId2, captionId});
    if (asked.size() > answers_.size()) {
      ADD_FAILURE() << "unexpected confirmation";
      return false;
    }
    return answers_[asked.size() - 1];
  }
  void ErrorBox(uint32_t textId, uint32_t captionId) override {
    errors.push_back({textId, captionId});
  }

  // The add-site dialog answers from its own script (nothing: the user cancelled).
  std::optional<SMAddSiteAnswer> RunAddSite(uint32_t, uint32_t) override {
    if (addSiteAnswers.empty()) {
      ADD_FAILURE() << "unexpected add-site dialog";
      return std::nullopt;
    }
    std::optional<SMAddSiteAnswer> answer = addSiteAnswers.front();
    addSiteAnswers.pop_front();
    return answer;
  }

  std::vector<std::vector<uint32_t>> asked;
  std::vector<std::vector<uint32_t>> errors;
  std::deque<std::optional<SMAddSiteAnswer>> addSiteAnswers;

 private:
  std::vector<bool> answers_;
};
