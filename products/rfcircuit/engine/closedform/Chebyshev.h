#pragma once

#include "products/rfcircuit/engine/closedform/Ladder.h"

#include <vector>

namespace rf {

/** |S21| of the ideal Chebyshev low-pass: |S21|^2 = 1 / (1 + e^2 T_n(f / cutoff)^2), e^2 = 10^(ripple / 10) - 1.
    Frequencies in Hz, ripple in dB; the cutoff is where the ripple is left for the last time. */
double ChebyshevLowPassS21(int order, double rippleDb, double cutoff, double frequency);

/** Element values g1 ... gn of the prototype with a source of 1 ohm and a cutoff of 1 rad/s (Matthaei, Young, Jones,
    "Microwave Filters, Impedance-Matching Networks, and Coupling Structures", 1964, section 4.05).  For odd orders the
    load is 1 ohm as well; even ones would need another load, so they are of no use between equal ports. */
std::vector<double> ChebyshevPrototype(int order, double rippleDb);

/** The low-pass as a ladder that begins with a shunt capacitor, in SI units; all its capacitors and inductors
    multiplied by a factor each.  With both factors s it is the filter with the cutoff divided by s. */
std::vector<LadderElement> ChebyshevLowPassLadder(int order, double rippleDb, double cutoff, double z0,
                                                  double capacitorScale = 1, double inductorScale = 1);

/** |S21| of the ideal band-pass that the low-pass turns into where f / cutoff becomes (f / f0 - f0 / f) / w, w being
    the bandwidth divided by the centre frequency f0; frequencies above zero. */
double ChebyshevBandPassS21(int order, double rippleDb, double centre, double relativeBandwidth, double frequency);

/** The same as a lossless ladder of parallel and series resonators, all tuned to the centre. */
std::vector<LadderElement> ChebyshevBandPassLadder(int order, double rippleDb, double centre, double relativeBandwidth,
                                                   double z0);

} // namespace rf
