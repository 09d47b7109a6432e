#pragma once

#include "desktop/project/SourceBase.h"

#include <functional>
#include <map>

namespace desktop {

/// What a changed source is to change in a design: a comparison of what the source said, what it says, and what the
/// design has.  What only the source changed is taken over; what the user changed here stays, and where both did, a
/// notice tells.
struct SourceMerge {
  /// Of one setup that the design has, in words: settings and name.
  struct PresentSetup {
    AString name;
    AString settings;
  };
  using Variables = std::vector<std::pair<AString, AString>>;
  using Describe = std::function<AString(io::CBlock const & settings)>;

  /// By the setups' IDs.
  using PresentSetups = std::map<long, PresentSetup>;

  SourceMerge(SourceBase const & former, SourceBase const & now, Variables const & variables,
              PresentSetups const & setups, Describe const & describe);

  /// All of the design, in order.
  Variables variables;
  std::map<long, io::CBlock> edited;
  std::vector<long> deleted;
  /// Places in `now` of setups to make.
  std::vector<std::size_t> added;
  /// What `now` is to remember, with the IDs that are known.
  SourceBase base;
  std::vector<AString> notices;

private:
  void MergeVariables(SourceBase const & former, SourceBase const & now, Variables const & present);
  void MergeSetups(SourceBase const & former, PresentSetups const & setups, Describe const & describe);
  void MergeSetup(SourceBase::Setup const & former, SourceBase::Setup & now, PresentSetups const & setups,
                  Describe const & describe);
};

} // namespace desktop
