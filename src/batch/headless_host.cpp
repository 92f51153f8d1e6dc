#include "batch/headless_host.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "batch/stopped.h"
#include "forms/form.h"

namespace merlane {
namespace {

/// The buttons of a box by the low bits of its style.
std::vector<Answer> ButtonsOf(int boxStyle) {
  switch (boxStyle & 15) {
    case 1:
      return {Answer::Ok, Answer::Cancel};
    case 3:
      return {Answer::Yes, Answer::No, Answer::Cancel};
    case 4:
      return {Answer::Yes, Answer::No};
    default:
      return {Answer::Ok};
  }
}

bool Offers(const std::vector<Answer>& buttons, Answer answer) { return std::ranges::count(buttons, answer) > 0; }

std::string Asking(const std::string& title, const std::string& text) {
  return fmt::format("{}: {}", Quoted(title), Quoted(text));
}

/// The path as a person would write it.
std::string Shown(const std::string& path) { return std::filesystem::path(path).lexically_normal().string(); }

}  // namespace

HeadlessHost::HeadlessHost(std::vector<BatchLine> lines, Folders folders, Transcript& transcript)
    : lines_(std::move(lines)), folders_(std::move(folders)), transcript_(transcript) {}

void HeadlessHost::Stop(int exitStatus, const BatchLine& line, const std::string& what) {
  throw Stopped{exitStatus, fmt::format("line {}: {}: {}", line.number, line.source, what)};
}

void HeadlessHost::StopUnanswered(const std::string& title, const std::string& text) const {
  const std::string what = "a question has no answer: " + Asking(title, text);
  if (commands_.empty()) throw Stopped{status::NoAnswer, "at the start: " + what};
  Stop(status::NoAnswer, *commands_.back(), what);
}

void HeadlessHost::PlayNext() {
  const BatchLine& line = lines_[next_++];
  if (Acknowledges(line)) return;
  if (IsAnswer(line)) Stop(status::FileAtFault, line, "an answer without a question");
  play(line);
}

void HeadlessHost::BeginCommand(const BatchLine& line) {
  commands_.push_back(&line);
  unacknowledged_.clear();
  for (Armed& armed : armed_) armed.counting = true;
}

void HeadlessHost::EndCommand() {
  commands_.pop_back();
  // An interrupt whose turn did not come goes with the command it was meant for.
  if (commands_.empty()) std::erase_if(armed_, [](const Armed& armed) { return armed.counting; });
}

bool HeadlessHost::Acknowledges(const BatchLine& line) {
  if (line.verb != Verb::Reply || line.answer != Answer::Ok) return false;
  const auto box = line.title ? std::ranges::find(unacknowledged_, *line.title) : unacknowledged_.begin();
  if (box == unacknowledged_.end()) return false;
  unacknowledged_.erase(box);
  return true;
}

const BatchLine& HeadlessHost::AnswerTo(Verb verb, const std::string& title, const std::string& text, bool offersOk) {
  for (;; ++next_) {
    if (AtEnd() || !IsAnswer(lines_[next_])) StopUnanswered(title, text);
    const BatchLine& line = lines_[next_];
    const bool fits = line.verb == verb && (!line.title || *line.title == title);
    if (!(fits && offersOk) && Acknowledges(line)) continue;
    if (!fits) Stop(status::FileAtFault, line, "does not answer the question " + Asking(title, text));
    return lines_[next_++];
  }
}

bool HeadlessHost::TakesOffer(const Message& message) {
  if (message.offer.empty()) return false;
  while (!AtEnd() && Acknowledges(lines_[next_])) ++next_;
  if (AtEnd()) return false;
  const BatchLine& line = lines_[next_];
  const bool takes =
      line.verb == Verb::Reply && line.answer == Answer::Offer && (!line.title || *line.title == message.title);
  if (takes) ++next_;
  return takes;
}

Answer HeadlessHost::MsgBox(const Message& message) {
  const std::vector<Answer> buttons = ButtonsOf(message.style);
  Answer answer = Answer::Ok;
  if (TakesOffer(message)) {
    answer = Answer::Offer;
  } else if (buttons.size() == 1) {
    unacknowledged_.push_back(message.title);
  } else {
    const BatchLine& line = AnswerTo(Verb::Reply, message.title, message.text, Offers(buttons, Answer::Ok));
    answer = line.answer;
    if (!Offers(buttons, answer))
      Stop(status::FileAtFault, line, "the question offers no such button: " + Asking(message.title, message.text));
  }
  transcript_.Asked(message, answer);
  return answer;
}

std::optional<std::string> HeadlessHost::InputBox(const InputRequest& request) {
  std::optional<std::string> answer = AnswerTo(Verb::Enter, request.title, request.prompt, false).text;
  transcript_.Entered(request, answer);
  return answer;
}

std::optional<std::string> HeadlessHost::AskFile(const FileRequest& request) {
  const bool opens = request.kind == FileRequest::Kind::Open;
  const std::string asked = opens ? "a file to open" : "a file to save in";
  std::optional<std::string> path = AnswerTo(Verb::File, request.title, asked, false).text;
  if (!path) {
    transcript_.Chosen(request, "");
    return path;
  }
  transcript_.Chosen(request, Shown(InFolder(opens ? folders_.reading : folders_.writing, *path)));
  const std::string leadsTo = opens ? folders_.ToRead(*path) : folders_.ToWrite(*path);
  if (opens) onOpen(*path, leadsTo);
  return leadsTo;
}

void HeadlessHost::OnForm(Form& form, FormEvent event) { transcript_.Window(form.name, event); }

void HeadlessHost::OnStatus(const std::string& bar, int panel, const std::string& text) {
  transcript_.Status(bar, panel, text);
}

void HeadlessHost::OnWrote(const std::string& path) {
  if (folders_.aside.empty()) transcript_.Wrote(Shown(path));
}

void HeadlessHost::OnFailure(const std::string& text) {
  failed_ = true;
  transcript_.Failure(text);
}

void HeadlessHost::OnEnd(int exitStatus) { endStatus_ = exitStatus; }

void HeadlessHost::Turn() {
  if (armed_.empty()) return;
  std::vector<BatchLine> due;
  for (Armed& armed : armed_)
    if (armed.counting && ++armed.turns == armed.line.turn) due.push_back(armed.line);
  for (BatchLine& line : due) {
    line.verb = line.closes ? Verb::Close : Verb::Press;
    line.source = (line.closes ? "close " : "press ") + line.target;
    play(line);
  }
}

long HeadlessHost::QuietTurns(long atMost) {
  long quiet = atMost;
  for (const Armed& armed : armed_)
    if (armed.counting && armed.turns < armed.line.turn)
      quiet = std::min(quiet, long{armed.line.turn} - armed.turns - 1);
  for (Armed& armed : armed_)
    if (armed.counting) armed.turns += quiet;
  return quiet;
}

void HeadlessHost::Wait() {
  if (AtEnd()) throw EndOfFile{};
  PlayNext();
}

}  // namespace merlane
