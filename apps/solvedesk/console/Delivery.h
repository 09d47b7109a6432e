#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace solvedesk {

/// Files and new folders that go into a folder together: they are made in a folder inside it and take their places when
/// all are there; a failure on the way puts back what stood there before.  Files of other names are left alone.
/// Failures are desktop::Error (kStorage).
class Delivery {
public:
  /// How the name of the folder inside begins.
  static constexpr char kWorkplace[] = ".solvedesk-";

  /// Makes the folder, with its parents, when it is not there.
  explicit Delivery(std::filesystem::path const & folder);
  /// Removes what did not take its place, and the folder when this made it and nothing came into it.
  ~Delivery();
  Delivery(Delivery const &) = delete;
  Delivery & operator=(Delivery const &) = delete;

  /// Where the files are to be made.
  std::filesystem::path const & Workplace() const { return m_workplace; }
  void WriteFile(std::string const & name, std::string const & text);
  void Deliver();
  /// The same, so that what is delivered survives a loss of power: at the price of a sync of each file.
  void DeliverForGood();

private:
  void Prepare();
  void TidyUp();
  void MakeWorkplace();
  void TakePlace(std::string const & name);
  void PutBack();

  std::filesystem::path m_folder;
  std::filesystem::path m_made; ///< holds the next two
  std::filesystem::path m_workplace;
  std::filesystem::path m_former; ///< where replaced files wait
  std::vector<std::filesystem::path> m_madeFolders;
  std::vector<std::pair<std::string, bool>> m_placed; ///< name, and whether it replaced one
};

} // namespace solvedesk
