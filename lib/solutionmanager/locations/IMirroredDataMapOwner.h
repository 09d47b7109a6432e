#pragma once

class AString;
class VariationIDIndex;

/// What a product's solution tells the mirrored stores that it owns: version numbers, variation IDs, and where result
/// files lie.  Relative locations count from the root directory; the layout below it is the owner's alone, as long as
/// ParseRelative... reads back what GetRelative... gave.  The keyword tells which store asks.  Stores keep a pointer
/// and never delete it; the owner outlives them.
class IMirroredDataMapOwner {
public:
  /// The version that is current for the store now.
  virtual long GetCurrentVersion(AString const & functionKeyword) = 0;
  /// For messages of the owner; no store asks.
  virtual AString GetName() = 0;
  /// A fresh ID.  Successive calls exceed any number that the design has handed out.
  virtual long GetNewID() = 0;
  /// Ends so that a relative location appended to it is a path; exists on return when `create` is set.  A folder of
  /// results alone: a discard removes what the locations of a design's file name below it.
  virtual AString GetRootDirectory(bool create) = 0;
  virtual long GetVariationID(AString const & variation) = 0;
  virtual AString GetVariationFromID(long variationID) = 0;
  virtual void ParseRelativeDoubleLocation(AString const & location, AString const & functionKeyword,
                                           VariationIDIndex & key, long & doubleID) = 0;
  virtual void ParseRelativeLocation(AString const & location, AString const & functionKeyword,
                                     VariationIDIndex & key) = 0;
  virtual AString GetRelativeDoubleLocation(AString const & functionKeyword, VariationIDIndex const & key,
                                            long doubleID) = 0;
  virtual AString GetRelativeLocation(AString const & functionKeyword, VariationIDIndex const & key) = 0;
  /// Before a commit of the location, which the owner may change.
  virtual void OnCommitDoubleLocation(AString const & variation, long originalVersion, long mirroredVersion,
                                      double value, AString const & functionKeyword, AString & location) = 0;
  virtual void OnCommitLocation(AString const & variation, long originalVersion, long mirroredVersion,
                                AString const & functionKeyword, AString & location) = 0;
  /// Before a file or folder is removed.
  virtual void OnDeleteDoubleLocation(AString const & variation, long originalVersion, long mirroredVersion,
                                      double value, AString const & functionKeyword) = 0;
  virtual void OnDeleteLocation(AString const & variation, long originalVersion, long mirroredVersion,
                                AString const & functionKeyword) = 0;
  /// Before a working file or folder moves to its committed place.
  virtual void OnMoveDoubleLocation(AString const & variation, long originalVersion, long mirroredVersion, double value,
                                    AString const & functionKeyword) = 0;
  virtual void OnMoveLocation(AString const & variation, long originalVersion, long mirroredVersion,
                              AString const & functionKeyword) = 0;
  /// Whether the write under way covers one variation alone, at the current version.
  virtual void GetSingleVariationToWrite(bool & isOnlyOne, long & variationID, AString & variation) = 0;
  /// A snapshot that does not keep the working locations tells the committed ones.
  virtual void GetWriteMode(bool & isSnapshot, bool & keepsWorkingLocations) = 0;

  virtual ~IMirroredDataMapOwner() = default;
};
