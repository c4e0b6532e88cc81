// Dialogs that a test plays: what its user does in a form stands in a function.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <tuple>

#include "dialogs/Forms.h"
#include "dialogs/frmBranch.h"
#include "dialogs/frmFind.h"
#include "dialogs/frmItems.h"
#include "dialogs/frmPLC.h"
#include "dialogs/frmReplace.h"
#include "dialogs/frmSetts.h"

class FakeForms : public Forms {
 public:
    /// What the user does in the next form of that kind. A form that is shown without anybody
    /// having said what to do fails the test.
    ///
    ///     forms.whenShown<frmPLC>([](frmPLC& form) { form.cmdApply_Click(); });
    template <typename Form>
    void whenShown(std::function<void(Form&)> user) {
        std::get<Users<Form>>(users_).push_back(std::move(user));
    }

    int aboutShown = 0;
    /// The find dialog while it is shown.
    frmFind* find = nullptr;

    void showModal(frmItems& form) override { playUser(form); }
    void showModal(frmPLC& form) override { playUser(form); }
    void showModal(frmBranch& form) override { playUser(form); }
    void showModal(frmSetts& form) override { playUser(form); }
    void showModal(frmReplace& form) override { playUser(form); }
    void show(frmFind& form) override { find = &form; }
    void close(frmFind& /*form*/) override { find = nullptr; }
    void showAbout() override { ++aboutShown; }

 private:
    template <typename Form>
    using Users = std::deque<std::function<void(Form&)>>;

    template <typename Form>
    void playUser(Form& form) {
        auto& users = std::get<Users<Form>>(users_);
        if (users.empty()) {
            ADD_FAILURE() << "Nobody said what to do in: " << Form::caption;
            return;
        }
        const auto user = std::move(users.front());
        users.pop_front();
        user(form);
    }

    std::tuple<Users<frmItems>, Users<frmPLC>, Users<frmBranch>, Users<frmSetts>, Users<frmReplace>>
        users_;
};
