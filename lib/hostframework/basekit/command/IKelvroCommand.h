#pragma once

class AString;
class KelvroCommandInfo;

/// A desktop command as its listeners see it.
class IKelvroCommand {
public:
  virtual ~IKelvroCommand();
  /// True while the changes are taken back by the user.
  virtual bool IsUndoing() const = 0;
  virtual bool IsRedoing() const = 0;
  /// True while the changes are taken back because the command failed.
  virtual bool IsRollingBack() const = 0;
  virtual AString const & GetName() const = 0;
  /// Null when nothing sits under the number; the info stays the command's.
  virtual KelvroCommandInfo * GetInfo(int number) const = 0;
  /// Takes ownership; an earlier info of that number goes.
  virtual void SetInfo(int number, KelvroCommandInfo * info) = 0;
};
