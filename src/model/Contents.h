// What a configuration consists of.
#pragma once

#include "model/ConfigTree.h"
#include "model/GlobalSets.h"
#include "model/Registry.h"
#include "model/clsBranch.h"
#include "model/clsItem.h"
#include "model/clsPLC.h"

/// Trees, registries and settings of one configuration: what `Document` owns, and what the changes
/// of its history take back.
struct Contents {
    ConfigTree tree;
    ConfigTree detached{&tree};
    Registry<clsPLC> devices;
    Registry<clsBranch> branches;
    Registry<clsItem> items;
    GlobalSets settings;

    template <typename Record>
    Registry<Record>& registry();
};

template <>
inline Registry<clsPLC>& Contents::registry<clsPLC>() {
    return devices;
}
template <>
inline Registry<clsBranch>& Contents::registry<clsBranch>() {
    return branches;
}
template <>
inline Registry<clsItem>& Contents::registry<clsItem>() {
    return items;
}
