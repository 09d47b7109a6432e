#pragma once

/// An extractor whose data is loaded for all its point sets at once; its point sets and traces are never shared.
class ISimDataExtractor2 {
public:
  virtual ~ISimDataExtractor2() = default;
};
