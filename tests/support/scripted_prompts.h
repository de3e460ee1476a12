#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <optional>
#include <utility>
#include <vector>

#include "app/user_prompts.h"

// Answers confirmations from a script and records everything the user was shown.
class ScriptedPrompts : public SMUserPrompts {
 public:
  explicit ScriptedPrompts(std::vector<bool> answers = {}) : answers_(std::move(answers)) {}
  bool ConfirmBox(TextId text1, TextId text2, TextId caption) override {
    asked.push_back({text1, text2, caption});
    if (asked.size() > answers_.size()) {
      ADD_FAILURE() << "unexpected confirmation";
      return false;
    }
    return answers_[asked.size() - 1];
  }
  void ErrorBox(TextId text, TextId caption) override { errors.push_back({text, caption}); }

  // The add-site dialog answers from its own script (nothing: the user cancelled).
  std::optional<SMAddSiteAnswer> RunAddSite(TextId, TextId) override {
    if (addSiteAnswers.empty()) {
      ADD_FAILURE() << "unexpected add-site dialog";
      return std::nullopt;
    }
    std::optional<SMAddSiteAnswer> answer = addSiteAnswers.front();
    addSiteAnswers.pop_front();
    return answer;
  }

  std::vector<std::vector<TextId>> asked;
  std::vector<std::vector<TextId>> errors;
  std::deque<std::optional<SMAddSiteAnswer>> addSiteAnswers;

 private:
  std::vector<bool> answers_;
};
