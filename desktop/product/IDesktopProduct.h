#pragma once

#include "desktop/product/SolveJob.h"
#include "desktop/product/SourceDescription.h"

#include <memory>

class BaseSimulationSetup;
class BaseSolutionVariation;
class IDesign;
class KelvroCommand;
class LongFileName;

namespace desktop {

class ProductSolutionManager;

/// The door for products: all that the desktop asks of a solver product.  One object per product, alive for the
/// process; it holds no state of a design.
class IDesktopProduct {
public:
  virtual ~IDesktopProduct() = default;
  /// The word for the product in commands and files: "rfcircuit".
  virtual AString GetName() const = 0;
  /// Reads a source; false with a one-line error that names file, line, thing and remedy.
  virtual bool ReadSource(LongFileName const & file, SourceDescription & description, AString & error) const = 0;
  virtual std::unique_ptr<ProductSolutionManager> MakeManager(IDesign * design) const = 0;
  /// Makes a setup with its solutions and enters it into the manager, which owns it then; undoable with a command.
  virtual BaseSimulationSetup * CreateSetup(ProductSolutionManager & manager, SourceSetup const & setup,
                                            KelvroCommand * command) const = 0;
  /// Of the solutions that CreateSetup makes for a setup of the type; an edit makes one anew that was deleted.
  virtual std::vector<AString> GetSolutionNames(AString const & setupType) const = 0;
  /// Reads the words that a user defines a setup by ("lin 201 10meg 2g") into its type and settings; false with a
  /// one-line error.
  virtual bool ReadSettings(AString const & words, SourceSetup & setup, AString & error) const = 0;
  /// Fits settings that a user gave to what the source knows, in names as the source spells them; false with a one-line
  /// error for what it doesn't know.  A source that can't be read now is no hindrance: reading it again tells that.
  virtual bool FitSettings(LongFileName const &, SourceSetup &, AString &) const { return true; }
  /// ReadSettings the other way: words that it makes equal settings of.
  virtual AString DescribeSettings(io::CBlock const & settings) const = 0;
  /// Gives a setup other settings, and the definitions of its solutions at their present versions; false, and nothing
  /// changed, when the settings make no sense to it.
  virtual bool ApplySettings(BaseSimulationSetup & setup, io::CBlock const & settings) const = 0;
  /// Completes a job for one variation of a setup: type and settings.
  virtual void DescribeJob(BaseSimulationSetup const & setup, SolveJob & job) const = 0;
  virtual std::unique_ptr<IJobRunner> MakeJobRunner() const = 0;
};

/// What a product adds whose results are network parameters.  Reached by a cross-cast from IDesktopProduct.
class INetworkProduct {
public:
  virtual ~INetworkProduct() = default;
  /// Writes one solved variation, which has its data in memory, as a Touchstone file; the extension (.s2p) comes from
  /// the number of ports and is added to the name.  Digits are significant ones.  False with a one-line error;
  /// `written` names the file all the same when it was the file system that refused it, and is empty otherwise.
  virtual bool WriteTouchstone(BaseSolutionVariation const & variation, LongFileName const & fileWithoutExtension,
                               int digits, LongFileName & written, AString & error) const = 0;
};

} // namespace desktop
