#include "web/page_host.h"

#include "base/json_text.h"
#include "web/deeds.h"
#include "web/page.h"

namespace merlane {
namespace {

using namespace std::chrono_literals;

void Tell(const char* what, const std::string& json) { ToPage(JsonObject({{what, json}})); }

/// The answer by its number.
Answer AnswerOf(const std::string& word) {
  for (const Answer answer : {Answer::Cancel, Answer::Yes, Answer::No, Answer::Offer})
    if (word == std::to_string(static_cast<int>(answer))) return answer;
  return Answer::Ok;
}

const char* WordFor(FileRequest::Adding adding) {
  switch (adding) {
    case FileRequest::Adding::WhereNone:
      return "where none";
    case FileRequest::Adding::WhereMissing:
      return "where missing";
    case FileRequest::Adding::Always:
      return "always";
  }
  return "";
}

}  // namespace

// A look at the clock leaves the module.
PageHost::PageHost() : clock_({.fastTurns = 64, .fastTurnsTake = 40us, .eventsEvery = 20ms, .newsEvery = 100ms}) {}

std::vector<std::string> PageHost::Ask(const std::string& question) {
  TellNews();
  Tell("ask", question);
  for (;;) {
    std::vector<std::string> words = FromPage(true);
    if (words.empty() || words[0] != "answer") continue;
    words.erase(words.begin());
    return words;
  }
}

Answer PageHost::MsgBox(const Message& message) {
  const std::vector<std::string> answer = Ask(JsonObject({{"kind", JsonOf("message")},
                                                          {"title", JsonOf(message.title)},
                                                          {"text", JsonOf(message.text)},
                                                          {"style", JsonOf(message.style)},
                                                          {"details", JsonOf(message.details)},
                                                          {"offer", JsonOf(message.offer)}}));
  return answer.empty() ? Answer::Ok : AnswerOf(answer[0]);
}

std::optional<std::string> PageHost::InputBox(const InputRequest& request) {
  const std::vector<std::string> answer = Ask(JsonObject({{"kind", JsonOf("line")},
                                                          {"title", JsonOf(request.title)},
                                                          {"text", JsonOf(request.prompt)},
                                                          {"default", JsonOf(request.defaultText)}}));
  if (answer.empty()) return std::nullopt;
  return answer[0];
}

std::optional<std::string> PageHost::AskFile(const FileRequest& request) {
  const bool saves = request.kind == FileRequest::Kind::Save;
  const std::vector<std::string> answer = Ask(JsonObject({{"kind", JsonOf(saves ? "save" : "open")},
                                                          {"title", JsonOf(request.title)},
                                                          {"filter", JsonOf(request.filter)},
                                                          {"filterIndex", JsonOf(request.filterIndex)},
                                                          {"start", JsonOf(request.startName)},
                                                          {"extension", JsonOf(request.extension)},
                                                          {"adding", JsonOf(WordFor(request.adding))}}));
  if (answer.empty()) return std::nullopt;
  return answer[0];
}

void PageHost::OnForm(Form& form, FormEvent event) {
  if (event != FormEvent::Shown && event != FormEvent::Front) return;
  TellNews();
  Tell("front", JsonOf(form.name));
}

void PageHost::Arrange(Arrangement arrangement) {
  switch (arrangement) {
    case Arrangement::Cascade:
      return Tell("arrange", JsonOf("cascade"));
    case Arrangement::TileHorizontal:
      return Tell("arrange", JsonOf("rows"));
    case Arrangement::TileVertical:
      return Tell("arrange", JsonOf("columns"));
    case Arrangement::Icons:
      return;  // there are none
  }
}

void PageHost::OnWrote(const std::string& path) { Tell("wrote", JsonOf(path)); }

void PageHost::Beep() { Tell("beep", JsonOf(true)); }

void PageHost::OnFailure(const std::string& text) {
  Ask(JsonObject({{"kind", JsonOf("failure")},
                  {"title", JsonOf("The command could not be completed")},
                  {"text", JsonOf("The command could not be completed. What was loaded or typed is still there.")},
                  {"style", JsonOf(style::Critical)},
                  {"details", JsonOf(text)},
                  {"offer", JsonOf("")}}));
}

void PageHost::OnEnd(int exitStatus) {
  TellNews();
  Tell("ended", JsonOf(exitStatus));
}

void PageHost::TellNews() {
  if (desk_ == nullptr) return;
  if (const std::string news = text_.News(*desk_); !news.empty()) Tell("forms", news);
  clock_.NewsAreTold();
}

void PageHost::Do(const std::vector<std::string>& words) {
  if (desk_ == nullptr) return;
  const Form* const form = words.size() < 3 ? nullptr : desk_->Find(words[1]);
  if (const Control* const control = form == nullptr ? nullptr : form->Find(words[2])) text_.Forget(*control);
  merlane::Do(*desk_, words);
}

void PageHost::DoWhatWasDone() {
  if (clock_.NewsAreDue()) TellNews();
  for (;;) {
    const std::vector<std::string> words = FromPage(false);
    if (words.empty()) break;
    Do(words);
  }
  clock_.EventsHaveRun();
}

void PageHost::Wait() {
  TellNews();
  Do(FromPage(true));
}

}  // namespace merlane
