#include "platform/compound_document.h"

#include <cstdint>
#include <cstring>
#include <vector>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

constexpr std::uint32_t LastOfChain = 0xFFFFFFFE, LastSector = 0xFFFFFFFA;

[[noreturn]] void RefuseDamaged() { throw RuntimeFailure("it is a workbook that is cut short or damaged"); }

template <class Number>
Number At(std::string_view bytes, std::size_t place) {
  if (place > bytes.size() || bytes.size() - place < sizeof(Number)) RefuseDamaged();
  Number number;  // little-endian, as this machine
  std::memcpy(&number, bytes.data() + place, sizeof number);
  return number;
}

class Document {
 public:
  explicit Document(std::string_view bytes)
      : bytes_(bytes), shift_(At<std::uint16_t>(bytes, 30)), smallShift_(At<std::uint16_t>(bytes, 32)) {
    if (shift_ < 7 || shift_ > 16 || smallShift_ < 4 || smallShift_ > shift_) RefuseDamaged();
    ReadTable();
    directory_ = Chain(At<std::uint32_t>(bytes, 48));
  }

  std::string Stream(std::string_view name) const {
    for (std::size_t entry = 0; entry + EntrySize <= directory_.size(); entry += EntrySize)
      if (NameAt(entry) == name && directory_[entry + 66] == StreamType) return Content(entry);
    return "";
  }

 private:
  static constexpr std::size_t EntrySize = 128;
  static constexpr char StreamType = 2;

  std::string_view Sector(std::uint32_t sector) const {
    const std::size_t begin = (std::size_t{sector} + 1) << shift_;
    if (sector > LastSector || begin >= bytes_.size()) RefuseDamaged();
    return bytes_.substr(begin, std::size_t{1} << shift_);
  }

  /// The table that tells which sector follows each; its own sectors are listed in the header and in a chain.
  void ReadTable() {
    constexpr std::size_t ListInHeader = 76, InHeader = 109;
    std::vector<std::uint32_t> sectors;
    for (std::size_t i = 0; i < InHeader; ++i) sectors.push_back(At<std::uint32_t>(bytes_, ListInHeader + 4 * i));
    const std::size_t most = bytes_.size() >> shift_;
    std::uint32_t next = At<std::uint32_t>(bytes_, 68);
    for (std::size_t count = 0; next <= LastSector && count <= most; ++count) {
      const std::string_view list = Sector(next);
      const std::size_t entries = (std::size_t{1} << shift_) / 4 - 1;
      for (std::size_t i = 0; i < entries; ++i) sectors.push_back(At<std::uint32_t>(list, 4 * i));
      next = At<std::uint32_t>(list, 4 * entries);
    }
    for (const std::uint32_t sector : sectors) {
      if (sector > LastSector) continue;
      const std::string_view part = Sector(sector);
      for (std::size_t i = 0; i + 4 <= part.size(); i += 4) table_.push_back(At<std::uint32_t>(part, i));
      if (table_.size() > most + (std::size_t{1} << shift_)) break;
    }
  }

  std::string Chain(std::uint32_t sector) const {
    std::string content;
    for (; sector != LastOfChain; sector = table_[sector]) {
      if (sector >= table_.size() || content.size() > bytes_.size()) RefuseDamaged();
      content += Sector(sector);
    }
    return content;
  }

  std::string NameAt(std::size_t entry) const {
    std::string name;
    for (std::size_t i = 0; i < 64; i += 2) {
      const auto c = At<std::uint16_t>(directory_, entry + i);
      if (c == 0) break;
      name += c < 128 ? static_cast<char>(c) : '?';
    }
    return name;
  }

  std::string Content(std::size_t entry) const {
    const auto first = At<std::uint32_t>(directory_, entry + 116), size = At<std::uint32_t>(directory_, entry + 120);
    std::string content = size >= At<std::uint32_t>(bytes_, 56) ? Chain(first) : SmallChain(first);
    if (content.size() < size) RefuseDamaged();
    content.resize(size);
    return content;
  }

  /// Small streams stand in a stream of their own, which the first entry of the directory tells.
  std::string SmallChain(std::uint32_t sector) const {
    const std::string small = Chain(At<std::uint32_t>(directory_, 116));
    const std::string table = Chain(At<std::uint32_t>(bytes_, 60));
    const std::size_t size = std::size_t{1} << smallShift_;
    std::string content;
    for (; sector != LastOfChain; sector = At<std::uint32_t>(table, std::size_t{sector} * 4)) {
      if (std::size_t{sector} * size >= small.size() || content.size() > small.size()) RefuseDamaged();
      content += small.substr(std::size_t{sector} * size, size);
    }
    return content;
  }

  const std::string_view bytes_;
  const unsigned shift_, smallShift_;
  std::vector<std::uint32_t> table_;
  std::string directory_;
};

}  // namespace

std::string StreamIn(std::string_view document, std::initializer_list<std::string_view> names) {
  const Document opened(document);
  for (const std::string_view name : names)
    if (std::string stream = opened.Stream(name); !stream.empty()) return stream;
  RefuseDamaged();
}

}  // namespace merlane
