#pragma once

#include "basekit/io/CBlock_named_value.h"
#include "basekit/io/CBlock_ptr.h"

#include <span>
#include <variant>
#include <vector>

namespace io {

/// Ordered arguments, positional or named.  Neighbouring positional numbers, and neighbouring texts, lie in one
/// run, so that 20,000 samples take 8 bytes each; whole numbers join a run of floating ones where nothing is lost.
class CBlock_func_arg {
public:
  /// A place among the arguments; any change of the arguments ends its life.
  class iterator {
  public:
    iterator() = default;
    bool operator==(iterator const & other) const = default;
    iterator & operator++();
    iterator operator++(int);
    bool IsNamed() const;
    /// The argument as an item: a named value, or a value.
    CBlock_ptr<CBlock_item> operator*() const;
    /// The value, of a named argument too; nothing at the end.
    CBlock_value Value() const;

  private:
    friend class CBlock_func_arg;
    iterator(CBlock_func_arg const * owner, std::size_t run, std::size_t at) : m_owner(owner), m_run(run), m_at(at) {}

    CBlock_func_arg const * m_owner = nullptr;
    std::size_t m_run = 0;
    std::size_t m_at = 0;
  };

  CBlock_func_arg() = default;
  CBlock_func_arg(CBlock_func_arg const & other);
  CBlock_func_arg(CBlock_func_arg && other) noexcept = default;
  CBlock_func_arg & operator=(CBlock_func_arg const & other);
  CBlock_func_arg & operator=(CBlock_func_arg && other) noexcept = default;

  iterator begin() const { return iterator(this, 0, 0); }
  iterator end() const { return iterator(this, m_runs.size(), 0); }
  std::size_t ArgumentCount() const;
  void ClearArguments() { m_runs.clear(); }
  std::size_t ArgumentMemory() const;

  void AppendArgument(CBlock_value const & value);
  void AppendArgument(CBlock_ptr<CBlock_named_value> const & named);
  void AppendReal(double value);
  void AppendInteger(long value);
  void AppendText(AString const & value);
  void AppendReals(std::span<double const> values);
  void AppendIntegers(std::span<long const> values);
  void AppendTexts(std::span<AString const> values);
  void AppendRun(std::vector<double> && values);
  void AppendRun(std::vector<long> && values);

  /// The first argument of that name, case ignored, or null.
  CBlock_named_value const * FindArgument(AString const & name) const;
  /// The run that begins at the place, empty when none of that type does.  A run shrinks to what is left behind
  /// the place; Skip goes on behind so many arguments of it.
  std::span<double const> Reals(iterator const & from) const;
  std::span<long const> Integers(iterator const & from) const;
  std::span<AString const> Texts(iterator const & from) const;
  void Skip(iterator & place, std::size_t count) const;

private:
  using RealRun = std::vector<double>;
  using IntegerRun = std::vector<long>;
  using TextRun = std::vector<AString>;
  using Run = std::variant<CBlock_ptr<CBlock_named_value>, RealRun, IntegerRun, TextRun, CBlock_value>;

  static std::size_t RunSize(Run const & run);
  template <class RunType> RunType * LastRun();
  template <class RunType> RunType & RunToExtend();
  template <class RunType> std::span<typename RunType::value_type const> RestOfRun(iterator const & from) const;
  RealRun & RealsToExtend();

  std::vector<Run, text::SmallAllocator<Run>> m_runs;
};

} // namespace io
