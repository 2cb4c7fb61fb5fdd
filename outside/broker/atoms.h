// String atoms.
#ifndef LXBRIDGE_OUTSIDE_BROKER_ATOMS_H_
#define LXBRIDGE_OUTSIDE_BROKER_ATOMS_H_

#include "clients/broker/broker_abi.h"

TALStringAtom NewAtom(const char* text) noexcept;  // Null: null text or no memory.
void DeleteAtom(TALStringAtom atom) noexcept;      // Null: nothing.

extern const TALStringProcs kStringProcs;

#endif  // LXBRIDGE_OUTSIDE_BROKER_ATOMS_H_
