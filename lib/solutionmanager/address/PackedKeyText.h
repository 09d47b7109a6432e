#pragma once

class AString;
class SolutionVariationKey;

/// What SolutionVariationKey::Unpack does, for names that are read by the hundred thousand: the text that Pack writes
/// is taken as it stands, without a tree of items; for any other text Unpack itself decides.
bool UnpackQuickly(AString const & packed, SolutionVariationKey & key);
