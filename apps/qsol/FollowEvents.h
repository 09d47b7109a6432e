#pragma once

#include "apps/qsol/Catalogue.h"
#include "apps/qsol/Json.h"

#include <iosfwd>
#include <map>

namespace qsol {

struct OpenedLibrary;

/// Tells what is new in a library since the last look, a line each.
class FollowEvents {
public:
  struct Style {
    bool json = false;
    bool items = false;
  };
  FollowEvents(OpenedLibrary & opened, Selection const & selection, Style style, std::ostream & out)
      : m_opened(opened), m_selection(selection), m_style(style), m_out(out) {}

  void Begin(bool isWritten);
  /// The first look tells of what is not committed yet.
  void Look();
  void End(char const * why);

private:
  /// What was known of a block at the last look.
  struct Known {
    Block block;
    std::uint64_t salt = 0;
    /// Of the stored bytes; 0 when they were not read.
    std::size_t hash = 0;

    bool IsAt(Block const & now, std::uint64_t nowSalt) const;
  };
  using KnownBlocks = std::map<AString, Known, AString::NoCaseLess>;

  void LookAt(Block const & block, KnownBlocks & now);
  std::size_t HashOf(Block const & block);
  void TellBlock(Block const & block, bool replaces);
  void TellItems(Block const & block);
  void TellDeleted(Block const & block);
  void TellCommit();
  void PrintLine(Json const & event);

  OpenedLibrary & m_opened;
  Selection m_selection;
  Style m_style;
  std::ostream & m_out;
  KnownBlocks m_known;
  std::uint64_t m_commits = 0;
  bool m_isFirst = true;
};

} // namespace qsol
