#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/runtime_failure.h"
#include "forms/form.h"
#include "platform/host.h"

namespace merlane::test {

/// A clock that stands where a test puts it.
class FixedClock : public Clock {
 public:
  DateTime now{2024, 6, 1, 10, 30, 0};
  DateTime Now() const override { return now; }
};

/// No workbook can be read.
class NoWorkbooks : public Workbooks {
 public:
  std::vector<Worksheet> Read(const std::string& path) override {
    throw RuntimeFailure("cannot read the workbook " + path);
  }
};

/// Windows that answer from a list and remember everything they were told. A question without an answer, an answer
/// without a question and a run-time failure that was not expected fail the test.
class ScriptedWindows : public WindowSystem {
 public:
  struct Status {
    std::string bar;
    int panel;
    std::string text;
  };
  struct Told {
    std::string form;
    FormEvent event;
    bool operator==(const Told&) const = default;
  };

  ScriptedWindows() = default;
  ScriptedWindows(const ScriptedWindows&) = delete;
  ScriptedWindows& operator=(const ScriptedWindows&) = delete;
  ~ScriptedWindows() override {
    for (const Prepared& answer : answers_) ADD_FAILURE() << "an answer without a question: " << answer.Describe();
    for (const std::string& failure : expectedFailures_) ADD_FAILURE() << "no failure spoke of: " << failure;
  }

  // What will be answered, in the order of the questions; a title that is given must be the question's.
  void Reply(Answer answer, const std::string& title = "") { answers_.push_back({Kind::Box, answer, "", title}); }
  void Yes(const std::string& title = "") { Reply(Answer::Yes, title); }
  void No(const std::string& title = "") { Reply(Answer::No, title); }
  /// Takes what a box offers beside OK.
  void TakeOffer(const std::string& title = "") { Reply(Answer::Offer, title); }
  void Enter(const std::string& text, const std::string& title = "") {
    answers_.push_back({Kind::Input, Answer::Ok, text, title});
  }
  void CancelInput(const std::string& title = "") { answers_.push_back({Kind::Input, Answer::Cancel, "", title}); }
  void File(const std::string& path, const std::string& title = "") {
    answers_.push_back({Kind::File, Answer::Ok, path, title});
  }
  void CancelFile(const std::string& title = "") { answers_.push_back({Kind::File, Answer::Cancel, "", title}); }
  /// A command will fail, with a text that holds `part`.
  void ExpectFailure(const std::string& part) { expectedFailures_.push_back(part); }

  /// Runs `action` in the n-th turn from now (1: the next).
  void AtTurn(int n, std::function<void()> action) { atTurn_[turns + n] = std::move(action); }
  /// Runs at each status that is shown.
  std::function<void(const Status&)> onStatus;
  /// Runs `action` when the program waits; each waiting takes the next action.
  void AtWait(std::function<void()> action) { atWait_.push_back(std::move(action)); }

  // What was told and asked.
  std::vector<Message> messages;
  std::vector<InputRequest> inputs;
  std::vector<FileRequest> files;
  std::vector<Status> statuses;
  std::vector<Told> formEvents;
  std::vector<std::string> failures;
  int toldFailures = 0;
  std::vector<std::string> writes;
  std::optional<int> exitStatus;
  int turns = 0;
  int waits = 0;
  /// All of it as one line each, in order: "message TITLE", "input TITLE", "file TITLE", "status BAR PANEL TEXT",
  /// "shown FORM", "hidden FORM", "unloaded FORM", "front FORM", "wrote PATH", "failure TEXT", "end STATUS".
  std::vector<std::string> events;

  /// The last message's text; empty when there was none.
  std::string LastText() const { return messages.empty() ? "" : messages.back().text; }
  /// The titles of all messages.
  std::vector<std::string> Titles() const {
    std::vector<std::string> titles;
    for (const Message& message : messages) titles.push_back(message.title);
    return titles;
  }
  bool AllAnswered() const { return answers_.empty(); }

  Answer MsgBox(const Message& message) override {
    messages.push_back(message);
    events.push_back("message " + message.title);
    const bool okAlone = (message.style & 15) == 0 && !OffersNext(message);
    return okAlone ? Answer::Ok : Take(Kind::Box, message.title, message.text).button;
  }
  std::optional<std::string> InputBox(const InputRequest& request) override {
    inputs.push_back(request);
    events.push_back("input " + request.title);
    const Prepared answer = Take(Kind::Input, request.title, request.prompt);
    if (answer.button == Answer::Cancel) return std::nullopt;
    return answer.text;
  }
  std::optional<std::string> AskFile(const FileRequest& request) override {
    files.push_back(request);
    events.push_back("file " + request.title);
    const Prepared answer = Take(Kind::File, request.title, "");
    if (answer.button == Answer::Cancel) return std::nullopt;
    return answer.text;
  }
  void OnForm(Form& form, FormEvent event) override {
    formEvents.push_back({form.name, event});
    static constexpr const char* names[] = {"shown ", "hidden ", "unloaded ", "front "};
    events.push_back(names[static_cast<int>(event)] + form.name);
  }
  void OnStatus(const std::string& bar, int panel, const std::string& text) override {
    statuses.push_back({bar, panel, text});
    events.push_back("status " + bar + " " + std::to_string(panel) + " " + text);
    if (onStatus) onStatus(statuses.back());
  }
  void OnWrote(const std::string& path) override {
    writes.push_back(path);
    events.push_back("wrote " + path);
  }
  void OnFailure(const std::string& text) override {
    failures.push_back(text);
    events.push_back("failure " + text);
    if (expectedFailures_.empty()) {
      ADD_FAILURE() << "a command failed: " << text;
      return;
    }
    EXPECT_NE(text.find(expectedFailures_.front()), std::string::npos)
        << "a command failed with \"" << text << "\" where \"" << expectedFailures_.front() << "\" was expected";
    expectedFailures_.pop_front();
  }
  void OnToldFailure() override { ++toldFailures; }
  void OnEnd(int status) override {
    exitStatus = status;
    events.push_back("end " + std::to_string(status));
  }
  void Turn() override {
    ++turns;
    const auto found = atTurn_.find(turns);
    if (found != atTurn_.end()) found->second();
  }
  void Wait() override {
    ++waits;
    if (atWait_.empty()) {
      ADD_FAILURE() << "the program waits and nothing will happen";
      throw std::runtime_error("the program waits and nothing will happen");
    }
    const auto action = std::move(atWait_.front());
    atWait_.pop_front();
    action();
  }

 private:
  enum class Kind { Box, Input, File };
  struct Prepared {
    Kind kind;
    Answer button;
    std::string text;
    std::string title;
    std::string Describe() const {
      static constexpr const char* kinds[] = {"reply", "enter", "file"};
      return std::string(kinds[static_cast<int>(kind)]) + " \"" + text + "\" at \"" + title + "\"";
    }
  };

  /// Whether the box has an offer, and the next answer takes it.
  bool OffersNext(const Message& message) const {
    if (message.offer.empty() || answers_.empty() || answers_.front().button != Answer::Offer) return false;
    return answers_.front().title.empty() || answers_.front().title == message.title;
  }

  /// The next answer, which must fit the question. Fails the test and unwinds when it does not: a form that asks until
  /// it is answered would never end.
  Prepared Take(Kind kind, const std::string& title, const std::string& text) {
    if (answers_.empty()) {
      ADD_FAILURE() << "a question without an answer: \"" << title << "\": " << text;
      throw std::runtime_error("a question without an answer");
    }
    const Prepared answer = answers_.front();
    if (answer.kind != kind || (!answer.title.empty() && answer.title != title)) {
      ADD_FAILURE() << "the question \"" << title << "\" (" << text << ") met the answer " << answer.Describe();
      throw std::runtime_error("an answer that does not fit the question");
    }
    answers_.pop_front();
    return answer;
  }

  std::deque<Prepared> answers_;
  std::deque<std::string> expectedFailures_;
  std::map<int, std::function<void()>> atTurn_;
  std::deque<std::function<void()>> atWait_;
};

/// A whole host for one program under test.
struct ScriptedHost {
  FixedClock clock;
  RandomStreams random{clock};
  NoWorkbooks workbooks;
  ScriptedWindows windows;

  Host Get() { return {windows, clock, random, workbooks}; }
};

}  // namespace merlane::test
