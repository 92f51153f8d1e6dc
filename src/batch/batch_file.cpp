#include "batch/batch_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <utility>

#include "base/text.h"

namespace merlane {
namespace {

struct Word {
  std::string text;
  bool quoted = false;
};

/// A verb, how it is spelled and what must stand behind it.
struct Form {
  Verb verb;
  std::string_view name, usage;
};

constexpr std::array forms{
    Form{Verb::Press, "press", "press FORM.CONTROL"},
    Form{Verb::Choose, "choose", "choose FORM.OPTION"},
    Form{Verb::Tick, "tick", "tick FORM.BOX"},
    Form{Verb::Untick, "untick", "untick FORM.BOX"},
    Form{Verb::Set, "set", "set FORM.CONTROL TEXT"},
    Form{Verb::Select, "select", "select FORM.LIST ROW"},
    Form{Verb::Click, "click", "click FORM.GRID ROW COLUMN"},
    Form{Verb::DoubleClick, "doubleclick", "doubleclick FORM.GRID ROW COLUMN or doubleclick FORM.LIST"},
    Form{Verb::Type, "type", "type FORM.GRID ROW COLUMN TEXT"},
    Form{Verb::Close, "close", "close FORM"},
    Form{Verb::Interrupt, "interrupt", "interrupt FORM.CONTROL at N"},
    Form{Verb::Seed, "seed", "seed N"},
    Form{Verb::Clock, "clock", "clock YYYY-MM-DD HH:MM:SS"},
    Form{Verb::Show, "show", "show FORM"},
    Form{Verb::SaveText, "save-text", "save-text FORM.PANE PATH"},
    Form{Verb::SavePlot, "save-plot", "save-plot FORM PATH"},
    Form{Verb::Export, "export", "export parameters|visits|fit PATH"},
    Form{Verb::Reply, "reply", "reply yes|no|cancel|ok|offer [at \"title\"]"},
    Form{Verb::Enter, "enter", "enter [TEXT] [at \"title\"]"},
    Form{Verb::File, "file", "file PATH|cancel [at \"title\"]"},
};

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

/// Takes a line apart into words and parses them by the verb.
class LineParser {
 public:
  LineParser(int number, std::string_view line) : text_(line) { line_.number = number; }

  /// Nothing when the line is blank or comment.
  std::optional<BatchLine> Parse() {
    CheckCharacters();
    Split();
    if (words_.empty()) return std::nullopt;
    line_.source = text_.substr(begin_, end_ - begin_);
    form_ = std::ranges::find_if(forms, [&](const Form& f) { return !words_[0].quoted && f.name == words_[0].text; });
    if (form_ == forms.end()) Fail(fmt::format("there is no action \"{}\"", words_[0].text));
    line_.verb = form_->verb;
    next_ = 1;
    ParseArguments();
    if (next_ < words_.size()) FailUsage(fmt::format("\"{}\" is too much", words_[next_].text));
    return line_;
  }

 private:
  [[noreturn]] void Fail(const std::string& what) const { throw BatchFault(line_.number, what); }
  [[noreturn]] void FailUsage(const std::string& what) const { Fail(fmt::format("{}; write {}", what, form_->usage)); }

  void CheckCharacters() const {
    for (std::size_t i = 0; i < text_.size();) {
      const auto c = static_cast<unsigned char>(text_[i]);
      if ((c < 0x20 && c != '\t') || c == 0x7F) Fail(fmt::format("control character {} in column {}", c, i + 1));
      const std::size_t length = Utf8Length(text_.substr(i));
      if (length == 0) Fail(fmt::format("column {} is no UTF-8 text", i + 1));
      i += length;
    }
  }

  void Split() {
    std::size_t i = 0;
    for (;;) {
      while (i < text_.size() && IsBlank(text_[i])) ++i;
      if (i == text_.size() || text_[i] == '#') return;
      if (words_.empty()) begin_ = i;
      i = text_[i] == '"' ? SplitQuoted(i) : SplitPlain(i);
      end_ = i;
    }
  }

  std::size_t SplitPlain(std::size_t i) {
    const std::size_t start = i;
    for (; i < text_.size() && !IsBlank(text_[i]); ++i)
      if (text_[i] == '"') Fail(fmt::format("a quotation mark inside a word, in column {}", i + 1));
    words_.push_back({std::string(text_.substr(start, i - start)), false});
    return i;
  }

  std::size_t SplitQuoted(std::size_t i) {
    Word word{"", true};
    for (++i; i < text_.size() && text_[i] != '"'; ++i) word.text += text_[i] == '\\' ? Escaped(++i) : text_[i];
    if (i >= text_.size()) Fail("a text in double quotes that does not end");
    if (++i < text_.size() && !IsBlank(text_[i]))
      Fail(fmt::format("no blank behind a quoted text, in column {}", i + 1));
    words_.push_back(word);
    return i;
  }

  char Escaped(std::size_t i) const {
    const char c = i < text_.size() ? text_[i] : ' ';
    if (c == 'n') return '\n';
    if (c == '"' || c == '\\') return c;
    Fail(fmt::format("inside double quotes a backslash stands before \", \\ or n alone, in column {}", i));
  }

  void ParseArguments() {
    if (IsAnswer(line_)) return ParseAnswer();
    if (line_.verb != Verb::Seed && line_.verb != Verb::Clock) line_.target = Name();
    switch (line_.verb) {
      case Verb::Set:
        line_.text = Take().text;
        break;
      case Verb::SaveText:
        line_.text = Path();
        break;
      case Verb::SavePlot:
        line_.text = Path();
        if (LowerCase(Rightmost(*line_.text, 4)) != ".svg") FailUsage("a plot is written as .svg");
        break;
      case Verb::Select:
        line_.row = Integer(1);
        break;
      case Verb::Click:
        Cell();
        break;
      case Verb::DoubleClick:
        if (next_ < words_.size()) Cell();
        break;
      case Verb::Type:
        Cell();
        line_.text = Take().text;
        break;
      case Verb::Interrupt:
        line_.closes = line_.target == "close";
        if (line_.closes) line_.target = Name();
        if (Take().text != "at") FailUsage("the word at is missing");
        line_.turn = Integer(1);
        break;
      case Verb::Seed:
        line_.seed = Number<std::uint64_t>(Take().text);
        break;
      case Verb::Clock:
        Date(Take().text);
        Time(Take().text);
        break;
      case Verb::Export:
        if (line_.target != "parameters" && line_.target != "visits" && line_.target != "fit")
          FailUsage(fmt::format("\"{}\" cannot be exported", line_.target));
        line_.text = Path();
        break;
      default:
        break;  // the target alone
    }
  }

  void ParseAnswer() {
    Title();
    if (line_.verb == Verb::Reply) {
      Reply(Take().text);
    } else if (line_.verb == Verb::Enter) {
      if (next_ < words_.size()) line_.text = Take().text;
    } else {
      line_.text = Path();
      if (*line_.text == "cancel" && !words_[1].quoted) line_.text.reset();
    }
  }

  const Word& Take() {
    if (next_ == words_.size()) FailUsage("something is missing");
    return words_[next_++];
  }

  std::string Name() {
    const std::string& name = Take().text;
    if (name.empty()) FailUsage("a name is missing");
    return name;
  }

  std::string Path() {
    const std::string& path = Take().text;
    if (path.empty()) FailUsage("a path is missing");
    return path;
  }

  template <class Integer>
  Integer Number(std::string_view digits) const {
    Integer value{};
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size() || digits.starts_with('-'))
      FailUsage(fmt::format("\"{}\" is no whole number that fits here", digits));
    return value;
  }

  int Integer(int least) {
    const std::string& digits = Take().text;
    const int value = Number<int>(digits);
    if (value < least) FailUsage(fmt::format("\"{}\" is less than {}", digits, least));
    return value;
  }

  void Cell() {
    line_.row = Integer(0);
    line_.column = Integer(0);
  }

  /// The numbers of a date or time like "1995-06-01", whose digits stand where `picture` has a 0.
  std::array<int, 3> Fields(const std::string& text, std::string_view picture) const {
    bool fits = text.size() == picture.size();
    std::array<int, 3> fields{};
    std::size_t field = 0;
    for (std::size_t i = 0; fits && i < picture.size(); ++i) {
      if (picture[i] != '0') {
        fits = text[i] == picture[i];
        ++field;
      } else {
        fits = text[i] >= '0' && text[i] <= '9';
        fields[field] = fields[field] * 10 + (text[i] - '0');
      }
    }
    if (!fits) FailUsage(fmt::format("\"{}\" is not of that form", text));
    return fields;
  }

  void Date(const std::string& text) {
    using namespace std::chrono;
    const auto [y, m, d] = Fields(text, "0000-00-00");
    if (!year_month_day(year(y), month(static_cast<unsigned>(m)), day(static_cast<unsigned>(d))).ok())
      FailUsage(fmt::format("there is no day {}", text));
    line_.time.year = y;
    line_.time.month = m;
    line_.time.day = d;
  }

  void Time(const std::string& text) {
    const auto [h, m, s] = Fields(text, "00:00:00");
    if (h > 23 || m > 59 || s > 59) FailUsage(fmt::format("there is no time of day {}", text));
    line_.time.hour = h;
    line_.time.minute = m;
    line_.time.second = s;
  }

  /// Takes `at "title"` off the end of an answer.
  void Title() {
    if (words_.size() < 3 || !words_.back().quoted) return;
    const Word& at = words_[words_.size() - 2];
    if (at.quoted || at.text != "at") return;
    line_.title = words_.back().text;
    words_.resize(words_.size() - 2);
  }

  void Reply(const std::string& word) {
    if (word == "yes")
      line_.answer = Answer::Yes;
    else if (word == "no")
      line_.answer = Answer::No;
    else if (word == "cancel")
      line_.answer = Answer::Cancel;
    else if (word == "ok")
      line_.answer = Answer::Ok;
    else if (word == "offer")
      line_.answer = Answer::Offer;
    else
      FailUsage(fmt::format("\"{}\" is no button", word));
  }

  std::string_view text_;
  std::vector<Word> words_;
  std::size_t begin_ = 0, end_ = 0;  // extent of the words in the line
  std::size_t next_ = 0;
  decltype(forms)::const_iterator form_ = forms.end();
  BatchLine line_;
};

}  // namespace

bool IsAnswer(const BatchLine& line) {
  return line.verb == Verb::Reply || line.verb == Verb::Enter || line.verb == Verb::File;
}

std::vector<BatchLine> ParseBatch(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);  // the mark that some editors put in front
  std::vector<BatchLine> lines;
  int number = 0;
  for (const std::string& line : Lines(text))
    if (auto parsed = LineParser(++number, line).Parse()) lines.push_back(std::move(*parsed));
  return lines;
}

}  // namespace merlane
