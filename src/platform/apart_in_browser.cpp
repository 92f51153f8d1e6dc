// A browser has no other process to give the work to, but what a program changes there is its memory alone: the work is
// done with the memory copied before and put back behind it. Whatever a library did to it stays in nobody's way.
#include <emscripten.h>

#include <new>

#include "base/runtime_failure.h"
#include "platform/apart.h"

namespace merlane {
namespace {

constexpr char Succeeded = '+', Failed = '-';

/// What the work came to, in the memory that is thrown away.
struct Answer {
  const std::function<std::string()>& work;
  std::string text;
};

void GetAnswer(Answer* answer) {
  try {
    answer->text = Succeeded + answer->work();
  } catch (const std::bad_alloc&) {
    answer->text = Failed + std::string("it takes more memory than there is");
  } catch (const std::exception& failure) {
    answer->text = Failed + std::string(failure.what());
  }
}

const char* BytesOf(const Answer* answer) { return answer->text.data(); }
std::size_t SizeOf(const Answer* answer) { return answer->text.size(); }

}  // namespace

// clang-format off
/// Calls `get(answer)` on a copy of the memory and keeps what `bytes` and `size` then say of it; returns that size, -1
/// when the call came to grief, or -2 when it read longer than so many seconds. Files that were opened are closed.
EM_JS(int, KeepAnswerOfCopy, (void* get, void* bytes, void* size, void* answer, double seconds), {
  const memory = HEAPU8.slice();
  const stack = stackSave();
  const open = new Set(FS.streams.filter(Boolean));
  const read = FS.read;
  const end = performance.now() + 1000 * seconds;
  let late = false;
  FS.read = (...given) => {
    late = performance.now() > end;
    if (late) throw new Error("late");
    return read(...given);
  };
  let result;
  try {
    const call = (f) => wasmTable.get(f)(answer);
    call(get);
    const begin = call(bytes);
    Module["answerApart"] = HEAPU8.slice(begin, begin + call(size));
    result = Module["answerApart"].length;
  } catch (failure) {
    result = late ? -2 : -1;
  }
  FS.read = read;
  HEAPU8.set(memory);
  HEAPU8.fill(0, memory.length);
  stackRestore(stack);
  for (const stream of FS.streams) if (stream && !open.has(stream)) FS.close(stream);
  return result;
});
EM_JS(void, TakeAnswer, (char* to), {
  HEAPU8.set(Module["answerApart"], to);
  delete Module["answerApart"];
});
// clang-format on

std::string RunApart(const std::function<std::string()>& work, const ApartLimits& most, const ReadingProgress&) {
  Answer answer{work, {}};
  const auto pointer = [](auto* function) { return reinterpret_cast<void*>(function); };
  const int size = KeepAnswerOfCopy(pointer(GetAnswer), pointer(BytesOf), pointer(SizeOf), &answer, most.seconds);
  if (size == -2) throw RuntimeFailure("reading it takes too long");
  if (size <= 0) throw RuntimeFailure("the file is damaged so badly that reading it came to grief");
  std::string text(static_cast<std::size_t>(size), '\0');
  TakeAnswer(text.data());
  const bool succeeded = text.front() == Succeeded;
  text.erase(0, 1);
  if (!succeeded) throw RuntimeFailure(text);
  return text;
}

}  // namespace merlane
