#include "batch/piece_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <utility>

#include "platform/digest.h"

namespace merlane {
namespace {

constexpr std::string_view FirstWords = "merlane piece ", FirstLine = "merlane piece 1";

/// On one line, whatever it holds.
std::string OneLine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    if (c == '\\' || c == '\n' || c == '\r') line += '\\';
    line += c == '\n' ? 'n' : c == '\r' ? 'r' : c;
  }
  return line;
}

std::optional<std::string> FromOneLine(std::string_view line) {
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] != '\\') {
      text += line[i];
      continue;
    }
    if (++i == line.size()) return std::nullopt;
    if (line[i] != '\\' && line[i] != 'n' && line[i] != 'r') return std::nullopt;
    text += line[i] == 'n' ? '\n' : line[i] == 'r' ? '\r' : '\\';
  }
  return text;
}

/// Takes a text apart, line by line and word by word. What does not read as it was written is a PieceFault.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  Piece Read() {
    TakeEnd();
    if (NextLine() != FirstLine) Fail("is no piece");
    Piece piece;
    Expect("version");
    piece.version = Rest();
    Expect("piece");
    piece.share.number = Counted(MostPieces);
    Expect("of", false);
    piece.share.of = Counted(MostPieces);
    if (piece.share.number > piece.share.of) Damaged();
    Expect("batch");
    piece.batchDigest = Word();
    piece.batchFile = Rest();
    Expect("at");
    piece.batchPlace = Rest();
    while (!text_.empty() && text_.starts_with("input ")) {
      Expect("input");
      const std::uint64_t digest = Word();
      piece.inputs.push_back({Rest(), digest});
    }
    while (!text_.empty()) piece.works.push_back(ReadWork());
    return piece;
  }

 private:
  [[noreturn]] static void Fail(const char* what) { throw PieceFault(what); }
  [[noreturn]] static void Damaged() { Fail("is cut off or damaged"); }

  /// The last line tells the digest of those before it, so that nothing else need be doubted.
  void TakeEnd() {
    if (!text_.starts_with(FirstWords) || text_ == FirstWords) Fail("is no piece");
    if (!text_.starts_with(FirstLine)) Fail("was written by another version of the program");
    const std::size_t end = text_.size() < 2 ? text_.npos : text_.rfind('\n', text_.size() - 2);
    if (end == text_.npos || !text_.ends_with('\n')) Damaged();
    const std::string_view before = text_.substr(0, end + 1);
    if (text_.substr(end + 1) != fmt::format("end {:x}\n", Digest().Add(before).Value())) Damaged();
    text_ = before;
  }

  std::string_view NextLine() {
    const std::size_t end = text_.find('\n');
    if (end == text_.npos) Damaged();
    line_ = text_.substr(0, end);
    text_.remove_prefix(end + 1);
    return line_;
  }

  /// The next word, of the line or of a new one, is this.
  void Expect(std::string_view word, bool newLine = true) {
    if (newLine) NextLine();
    if (NextWord() != word) Damaged();
  }

  std::string_view NextWord() {
    const std::size_t end = std::min(line_.find(' '), line_.size());
    const std::string_view word = line_.substr(0, end);
    line_.remove_prefix(std::min(end + 1, line_.size()));
    return word;
  }

  std::uint64_t Word() {
    const std::string_view word = NextWord();
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value, 16);
    if (error != std::errc() || end != word.data() + word.size()) Damaged();
    return value;
  }

  int Counted(int most) {
    const std::string_view word = NextWord();
    int value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size() || value < 1 || value > most) Damaged();
    return value;
  }

  std::string Rest() {
    const auto text = FromOneLine(line_);
    if (!text) Damaged();
    return *text;
  }

  DoneWork ReadWork() {
    DoneWork work;
    Expect("work");
    work.basis = Word();
    work.name = Rest();
    while (!text_.empty() && !text_.starts_with("work ")) {
      NextLine();
      const std::uint64_t part = Word();
      if (part > static_cast<std::uint64_t>(INT64_MAX)) Damaged();
      Words words;
      while (!line_.empty()) words.push_back(Word());
      if (!work.parts.emplace(static_cast<std::int64_t>(part), std::move(words)).second) Damaged();
    }
    return work;
  }

  std::string_view text_;  // what is still to be read
  std::string_view line_;  // the rest of the present line
};

}  // namespace

std::string PieceText(const Piece& piece) {
  std::string text = fmt::format("{}\nversion {}\npiece {} of {}\nbatch {:x} {}\nat {}\n", FirstLine,
                                 OneLine(piece.version), piece.share.number, piece.share.of, piece.batchDigest,
                                 OneLine(piece.batchFile), OneLine(piece.batchPlace));
  for (const Piece::Input& input : piece.inputs)
    text += fmt::format("input {:x} {}\n", input.digest, OneLine(input.name));
  for (const DoneWork& work : piece.works) {
    text += fmt::format("work {:x} {}\n", work.basis, OneLine(work.name));
    for (const auto& [part, words] : work.parts) {
      fmt::format_to(std::back_inserter(text), "{:x}", part);
      for (const std::uint64_t word : words) fmt::format_to(std::back_inserter(text), " {:x}", word);
      text += '\n';
    }
  }
  return Sealed(std::move(text));
}

std::string Sealed(std::string text) {
  const std::uint64_t digest = Digest().Add(text).Value();
  return std::move(text) + fmt::format("end {:x}\n", digest);
}

Piece ReadPiece(std::string_view text) { return Reader(text).Read(); }

std::optional<Share> ShareOf(std::string_view text) {
  Share share;
  const char* const end = text.data() + text.size();
  const auto number = std::from_chars(text.data(), end, share.number);
  if (number.ec != std::errc() || number.ptr == end || *number.ptr != '/') return std::nullopt;
  const auto of = std::from_chars(number.ptr + 1, end, share.of);
  if (of.ec != std::errc() || of.ptr != end) return std::nullopt;
  if (share.number < 1 || share.number > share.of || share.of > MostPieces) return std::nullopt;
  return share;
}

std::string PieceFileName(const std::string& batchFile, const Share& share) {
  return fmt::format("{}.{}-of-{}.piece", std::filesystem::path(batchFile).stem().string(), share.number, share.of);
}

}  // namespace merlane
