#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "import/remarks.h"
#include "import/row_fields.h"
#include "import/visit_record.h"

namespace merlane {

/// Tells when another column says that a brood has failed of which some are left at its last visit: its number would be
/// one that was repeated. What rows before the last say is no matter, since many write an end beside each visit.
class BroodEnds {
 public:
  /// Looks at this column, too.
  void Watch(std::size_t column, const std::string& name);

  void Look(const RowFields& fields, const VisitRecord& visit);
  void Tell(Remarks& remarks) const;

 private:
  /// What an answer or a mark says under a heading.
  enum class Heading { OfOtherThings, OfFates, OfFailure, OfSurvival };
  struct Column {
    std::size_t place = 0;
    std::string name;
    Heading heading = Heading::OfOtherThings;

    /// Whether a field says that a brood has failed: by a word or, where the heading speaks of that, in short.
    bool SaysFailed(const std::string& text) const;
  };
  struct End {
    int day = 0, line = 0;
    std::string contradiction;  // empty when there is none
  };

  std::vector<Column> columns_;
  std::map<std::pair<int, std::string>, End> ends_;  // by year and code
  decltype(ends_)::iterator latest_ = ends_.end();   // rows of a brood mostly follow each other
};

}  // namespace merlane
