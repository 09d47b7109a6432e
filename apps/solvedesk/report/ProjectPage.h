#pragma once

#include "desktop/page/Document.h"
#include "desktop/pageview/ReportItems.h"

#include <string>
#include <vector>

namespace solvedesk {

/// What is to stand on a page.
struct PageContents {
  std::vector<desktop::ReportDefinition> reports;
  bool isWhole = false; ///< the design's tree, convergence and costs too
  desktop::pageview::Look look;
};

/// A page as it was made from a session, and what there is to tell of it.
struct ProjectPage {
  desktop::page::Document document;
  std::vector<std::string> notes;   ///< what could not be had, one line each
  std::vector<std::string> nothing; ///< of the reports that have nothing to show: why
  std::size_t plots = 0;
  std::size_t points = 0; ///< samples in plots
  int code = 0;           ///< not 0 when records of solves are damaged, which was told on standard error
};

/// A section for each report, with its plots, single numbers and a table of all; then what is asked for of the
/// project.  Owns its numbers: the session may go.
ProjectPage MakePage(desktop::Session & session, std::string const & project, PageContents const & contents);

} // namespace solvedesk
