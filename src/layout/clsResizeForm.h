// The initial geometry of a form and its controls.
#pragma once

#include <map>
#include <string>

#include "layout/clsResizeControl.h"

/// The reference size of one form, and the initial geometry of its controls.
class clsResizeForm {
 public:
    std::string Form_Name;
    int Form_Width = 0;
    int Form_Height = 0;

    /// The record with the key (see clsResizeControl::keyOf); null when there is none. The pointer
    /// is valid as long as this object.
    const clsResizeControl* GetControl(const std::string& key) const {
        const auto found = controls_.find(key);
        return found == controls_.end() ? nullptr : &found->second;
    }

    /// Adds the record under the key of its control, and returns the stored record. An existing
    /// record is kept: initial values are never overwritten.
    const clsResizeControl& SetControl(const clsResizeControl& control) {
        const auto key = clsResizeControl::keyOf(control.Ctrl_Name, control.Ctrl_Index);
        return controls_.try_emplace(key, control).first->second;
    }

 private:
    std::map<std::string, clsResizeControl> controls_;
};
