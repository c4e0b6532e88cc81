// The data of a configuration.
#pragma once

#include "model/ConfigTree.h"
#include "model/GlobalSets.h"
#include "model/Registry.h"
#include "model/clsBranch.h"
#include "model/clsItem.h"
#include "model/clsPLC.h"

/// The trees, registries and settings of one configuration. `Document` owns them; only it and the
/// changes of its history modify them.
///
///     contents.registry<clsItem>().add(item, key);
///     contents.tree.AddNode(parentKey, key, name, NodeKind::item);
struct Contents {
    ConfigTree tree;
    ConfigTree detached{&tree};  ///< devices that were dragged elsewhere
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
