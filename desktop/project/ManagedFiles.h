#pragma once

class LongFileName;

namespace desktop {

class ProductSolutionManager;

/// The managed files of a design over the sessions of its project.  What a session created or deleted without a save
/// waits for the next one, as its other work does.

bool HaveUnsavedManagedFiles(ProductSolutionManager const & manager);
/// A save; false when the lists could not be written.
bool CommitManagedFiles(ProductSolutionManager & manager);
/// Before a manager goes whose work stays, or that only reads.
void LeaveManagedFiles(ProductSolutionManager const & manager);
/// A discard: what was created goes with the manager, what was deleted stays.
void DropManagedFilesWith(ProductSolutionManager const & manager);

/// Copies the managed files of the results folder, saved or not, and their lists.
bool CopyManagedFiles(ProductSolutionManager const & manager, LongFileName const & folder);

} // namespace desktop
