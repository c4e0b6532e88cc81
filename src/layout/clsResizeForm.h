// What one form and its controls looked like at first.
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

    /// The record under the key (see clsResizeControl::keyOf); null when there is none. It stays
    /// where it is as long as the form's record lives.
    const clsResizeControl* GetControl(const std::string& key) const {
        const auto found = controls_.find(key);
        return found == controls_.end() ? nullptr : &found->second;
    }

    /// Adds the record under its control's key, and gives what stands there. A record that is
    /// there already stays: initial values are never overwritten.
    const clsResizeControl& SetControl(const clsResizeControl& control) {
        const auto key = clsResizeControl::keyOf(control.Ctrl_Name, control.Ctrl_Index);
        return controls_.try_emplace(key, control).first->second;
    }

 private:
    std::map<std::string, clsResizeControl> controls_;
};
