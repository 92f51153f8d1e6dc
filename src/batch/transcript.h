#pragma once

#include <optional>
#include <ostream>
#include <string>

#include "batch/batch_file.h"
#include "forms/form.h"
#include "platform/shared_work.h"
#include "platform/window_system.h"

namespace merlane {

/// What a run tells about itself, as it goes along.
class Transcript {
 public:
  virtual ~Transcript() = default;
  virtual void Action(const std::string& action, int line) = 0;
  virtual void Window(const std::string& form, FormEvent event) = 0;
  virtual void Asked(const Message& message, Answer answer) = 0;
  virtual void Entered(const InputRequest& request, const std::optional<std::string>& answer) = 0;
  virtual void Chosen(const FileRequest& request, const std::string& answer) = 0;
  virtual void Status(const std::string& bar, int panel, const std::string& text) = 0;
  virtual void State(const Form& form) = 0;
  /// What somebody who reads a file that is about to be written must know of it.
  virtual void Note(const std::string& text) = 0;
  virtual void Wrote(const std::string& path) = 0;
  /// A work begins of which this run does a share.
  virtual void Shares(const std::string& work, const Share& share) = 0;
  virtual void Failure(const std::string& text) = 0;
  virtual void End(const std::string& how) = 0;
};

/// One line of plain words for each thing that happens.
class PeopleTranscript : public Transcript {
 public:
  explicit PeopleTranscript(std::ostream& out) : out_(out) {}
  void Action(const std::string& action, int line) override;
  void Window(const std::string& form, FormEvent event) override;
  void Asked(const Message& message, Answer answer) override;
  void Entered(const InputRequest& request, const std::optional<std::string>& answer) override;
  void Chosen(const FileRequest& request, const std::string& answer) override;
  void Status(const std::string& bar, int panel, const std::string& text) override;
  void State(const Form& form) override;
  void Note(const std::string& text) override;
  void Wrote(const std::string& path) override;
  void Shares(const std::string& work, const Share& share) override;
  void Failure(const std::string& text) override;
  void End(const std::string& how) override;

 private:
  void Write(const std::string& line);
  std::ostream& out_;
};

/// One JSON object on a line of its own for each thing that happens.
class JsonTranscript : public Transcript {
 public:
  explicit JsonTranscript(std::ostream& out) : out_(out) {}
  void Action(const std::string& action, int line) override;
  void Window(const std::string& form, FormEvent event) override;
  void Asked(const Message& message, Answer answer) override;
  void Entered(const InputRequest& request, const std::optional<std::string>& answer) override;
  void Chosen(const FileRequest& request, const std::string& answer) override;
  void Status(const std::string& bar, int panel, const std::string& text) override;
  void State(const Form& form) override;
  void Note(const std::string& text) override;
  void Wrote(const std::string& path) override;
  void Shares(const std::string& work, const Share& share) override;
  void Failure(const std::string& text) override;
  void End(const std::string& how) override;

 private:
  std::ostream& out_;
};

/// A text on one line in double quotes, with \", \\ and \n inside as in a batch file.
std::string Quoted(const std::string& text);

}  // namespace merlane
