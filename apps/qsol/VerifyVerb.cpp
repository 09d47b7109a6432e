// qsol verify: what is damaged, where, and what is still good.

#include "apps/qsol/VerifyVerb.h"

#include "apps/qsol/Failure.h"
#include "apps/qsol/Json.h"
#include "apps/qsol/Text.h"
#include "apps/qsol/Verbs.h"
#include "apps/qsol/Verification.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <algorithm>

namespace qsol {

namespace {

std::string ToText(Verification::Problem const & problem) {
  std::string text = fmt::format("damaged: {}", OneLine(problem.file));
  if (problem.length > 0)
    text += fmt::format(" at {}, {} bytes", problem.offset, problem.length);
  text += ": " + problem.what;
  if (!problem.lost.empty()) {
    text += "; lost:";
    for (Block const * const block : problem.lost)
      text += " " + block->Description();
  } else if (!problem.name.empty()) {
    text += "; block " + OneLine(problem.name);
  }
  // A record's name has a checksum of its own, and a damage of its own.
  char const * const part = problem.what.starts_with("the name") ? "its name there" : "its record header";
  for (Block const * const block : problem.good)
    text += fmt::format("; {}: {} is damaged, the block itself is good", block->Description(), part);
  return text;
}

char const * Verdict(Verification const & found) {
  if (!found.IsFine())
    return "damaged";
  return found.publicTail > 0    ? "fine up to its last commit"
         : found.privateTail > 0 ? "fine up to its last save"
                                 : "fine";
}

// Of the rest of what can be lost nothing can be solved.
bool LosesData(Verification const & found) {
  auto const isData = [](Block const * block) { return block->kind == Kind::Data; };
  return std::any_of(found.problems.begin(), found.problems.end(), [&](auto const & problem) {
    return std::any_of(problem.lost.begin(), problem.lost.end(), isData);
  });
}

void Print(Verification const & found, OpenedLibrary const & opened, std::ostream & out) {
  for (auto const & problem : found.problems)
    fmt::print(out, "{}\n", ToText(problem));
  for (std::string const & remark : found.remarks)
    fmt::print(out, "note: {}\n", remark);
  if (LosesData(found))
    fmt::print(out, "note: solve anew what is lost: solvedesk solve PROJECT --again --vary NAME=VALUE ...\n");
  std::size_t const blocks = found.goodBlocks + found.lostBlocks;
  fmt::print(out, "{}: {} ({}), {} whole, {} of {} good\n", OneLine(opened.publicPath), Verdict(found), opened.Shown(),
             Count(found.wholeRecords, "record"), found.goodBlocks, Count(blocks, "block"));
}

Json ToJson(std::vector<Block const *> const & blocks) {
  Json list = Json::array();
  for (Block const * const block : blocks)
    list.push_back({{"name", Utf8(block->entry.name)},
                    {"real_name", block->realName.empty() ? Json() : Json(Utf8(block->realName))},
                    {"kind", NameOf(block->kind)}});
  return list;
}

Json ToJson(Verification::Problem const & problem) {
  return {{"file", Utf8(problem.file)},
          {"offset", problem.offset},
          {"length", problem.length},
          {"what", problem.what},
          {"block", problem.name.empty() ? Json() : Json(Utf8(problem.name))},
          {"lost", ToJson(problem.lost)},
          {"good", ToJson(problem.good)}};
}

Json ToJson(Verification const & found, Catalogue const & catalogue, OpenedLibrary const & opened) {
  Json document = DocumentHead(opened);
  document["fine"] = found.IsFine();
  document["private_state"] = NameOf(opened.privateState);
  document["whole_records"] = found.wholeRecords;
  document["good_blocks"] = found.goodBlocks;
  document["lost_blocks"] = found.lostBlocks;
  document["uncounted_bytes"] = found.publicTail + found.privateTail;
  document["damages"] = Json::array();
  for (auto const & problem : found.problems)
    document["damages"].push_back(ToJson(problem));
  document["dangling"] = Json::array();
  for (auto const & entry : catalogue.Dangling())
    document["dangling"].push_back({{"name", Utf8(entry.internalName)}, {"real_name", Utf8(entry.realName)}});
  document["unmapped"] = Json::array();
  for (Block const * const block : found.unmapped)
    document["unmapped"].push_back(Utf8(block->entry.name));
  document["remarks"] = found.remarks;
  return document;
}

} // namespace

int VerifyLibrary(VerifyOptions const & options, Streams const & streams) {
  ViewOptions view = options.view;
  view.withPrivate = !view.committedOnly;
  OpenedLibrary opened;
  OpenLibrary(view, opened);
  Catalogue const catalogue(opened.reader);
  Verification const found = Verify(opened, catalogue, view.committedOnly);
  if (options.json)
    streams.out << ToJson(found, catalogue, opened).dump(2) << '\n';
  else
    Print(found, opened, streams.out);
  for (std::string const & notice : opened.notices)
    streams.note(notice);
  return static_cast<int>(found.IsFine() ? Exit::Done : Exit::Failed);
}

void AddVerifyVerb(CLI::App & program, Action & action) {
  auto const options = std::make_shared<VerifyOptions>();
  CLI::App * const verb = program.add_subcommand("verify", "check every record; tell what is damaged and what is good");
  AddViewOptions(*verb, options->view);
  verb->add_flag("--json", options->json, "print one JSON document");
  verb->footer(
      "Both files are checked unless --committed-only is given. The last line is the verdict. No damage, but\n"
      "told: a tail that a write left unfinished or a cut left over (then the verdict is 'fine up to its last\n"
      "commit'), entries of the name map without a block, blocks without an entry. A block behind a damaged\n"
      "record header is good where the index tells its place and checksum. Nothing is repaired: what is good can be "
      "read, what is lost has to be solved anew:\n"
      "solvedesk solve PROJECT --again --vary NAME=VALUE ...\n\n"
      "Exit code 0: fine, 1: damaged, 3: can't be read, 4: no library, 5: of a later format.\n\n"
      "Examples:\n"
      "  qsol verify amp.qsol\n"
      "  qsol verify amp.qsol --json");
  verb->callback(
      [&action, options] { action = [options](Streams const & streams) { return VerifyLibrary(*options, streams); }; });
}

} // namespace qsol
