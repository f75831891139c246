#include "ObjectLoop.h"

#include <phonepim/platform/Assert.h>
#include <phonepim/platform/Errors.h>

#include <chrono>
#include <cstdint>
#include <ostream>
#include <stdexcept>

#include "ObjectReport.h"
#include "Progress.h"

namespace phonepim::tool {
namespace {

// The assertions bad phone data can trip, in words a person can act on.
std::string RefusalReason(const std::string& assertion, const char* version) {
  if (assertion.find('"' + std::string(version) + '"') != std::string::npos) {
    return std::string("its VERSION is not ") + version;
  }
  if (assertion == "len < 256") return "its X-SPEEDDIAL value is 256 bytes or longer";
  return "a value it cannot take";
}

}  // namespace

bool BeginsWith(std::string_view object, std::string_view name) {
  static constexpr std::string_view kBegin = "BEGIN:";
  if (object.size() < kBegin.size() + name.size()) return false;
  const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
  for (std::size_t i = 0; i < kBegin.size() + name.size(); ++i) {
    const char expected = i < kBegin.size() ? kBegin[i] : upper(name[i - kBegin.size()]);
    if (upper(object[i]) != expected) return false;
  }
  const std::string_view rest = object.substr(kBegin.size() + name.size());
  return rest.empty() || rest[0] == '\r' || rest[0] == '\n';
}

bool CatchReadFailure(const std::function<void()>& read, const char* version,
                      std::string* error) {
  try {
    read();
    return true;
  } catch (std::uint16_t code) {
    *error = code == kVersitParseError ? "the tokenizer rejected it"
                                       : "the reader failed with code " + std::to_string(code);
  } catch (const AssertionFailure& failure) {
    *error = "the reader refused it: " + RefusalReason(failure.text(), version) +
             " (assertion \"" + failure.text() + "\")";
  } catch (const std::out_of_range& e) {
    *error = std::string("a value out of range (") + e.what() + ")";
  }
  return false;
}

int ForEachObject(const std::vector<ObjectInFile>& objects, const std::string& sourceName,
                  const ReadOptions& options, const ObjectNouns& nouns, std::ostream& err,
                  const std::function<bool(const ObjectInFile&, std::string* error)>& read,
                  const std::function<void(const ObjectInFile&)>& visit, std::size_t* failed) {
  using Clock = std::chrono::steady_clock;
  Progress progress(err, nouns.progress, objects.size(), options.quiet);
  Clock::duration total{};
  Clock::duration slowest{};
  const ObjectInFile* slowestObject = nullptr;
  std::size_t readCount = 0;
  for (const ObjectInFile& object : objects) {
    progress.Update(object.index);
    if (object.skipped) {
      ++*failed;
      progress.Clear();
      err << ObjectHeading(sourceName, object.index, *object.span, object.text) << ": "
          << object.skipped << '\n';
      continue;
    }
    if (!object.span->terminated && !options.readerReportsTruncation) {
      progress.Clear();
      err << ShortObjectHeading(sourceName, object.index, *object.span)
          << ": no END line before the end of the file\n";
    }
    std::string error;
    const Clock::time_point start = Clock::now();
    const bool ok = read(object, &error);
    const Clock::duration took = Clock::now() - start;
    ++readCount;
    total += took;
    if (!slowestObject || took > slowest) {
      slowest = took;
      slowestObject = &object;
    }
    if (!ok) {
      ++*failed;
      progress.Clear();
      err << ObjectHeading(sourceName, object.index, *object.span, object.text) << ": " << error
          << '\n';
      continue;
    }
    if (options.verbose) {
      progress.Clear();
      err << ShortObjectHeading(sourceName, object.index, *object.span) << ": read in "
          << std::chrono::duration<double, std::micro>(took).count() << " us\n";
    }
    visit(object);
  }
  progress.Clear();
  if (options.verbose && slowestObject) {
    err << sourceName << ": " << readCount << ' ' << (readCount == 1 ? nouns.one : nouns.many)
        << " read in "
        << std::chrono::duration<double, std::milli>(total).count() << " ms, the slowest "
        << ShortObjectHeading(sourceName, slowestObject->index, *slowestObject->span)
               .substr(sourceName.size() + 2)
        << " in " << std::chrono::duration<double, std::micro>(slowest).count() << " us\n";
  }
  return *failed ? 1 : 0;
}

}  // namespace phonepim::tool
