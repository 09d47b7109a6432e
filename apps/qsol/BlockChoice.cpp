#include "apps/qsol/BlockChoice.h"

#include "apps/qsol/Failure.h"
#include "apps/qsol/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace qsol {

void CheckNames(std::vector<std::string> const & names) {
  if (std::ranges::find(names, std::string()) != names.end())
    throw Failure(Exit::Usage, "'': is no NAME; 'qsol list' shows the names");
}

std::vector<Block const *> ChosenBlocks(std::vector<std::string> const & names, SelectionWords const & selection,
                                        Catalogue const & catalogue, std::string const & file,
                                        std::vector<std::string> & errors) {
  std::vector<Block const *> chosen;
  for (std::string const & name : names) {
    Block const * const block = catalogue.Find(Word(name));
    if (block)
      chosen.push_back(block);
    else
      errors.push_back(
          fmt::format("{}: there is no block '{}'; 'qsol list' shows the names", file, OneLine(Word(name))));
  }
  if (!names.empty())
    return chosen;
  Selection const wanted = selection.Read();
  for (Block const & block : catalogue.Blocks())
    if (wanted.Fits(block))
      chosen.push_back(&block);
  if (chosen.empty())
    errors.push_back(file + ": no block is like that; 'qsol list' shows what there is");
  return chosen;
}

} // namespace qsol
