// Dialogs without windows: a function of the test acts in each form.
#pragma once

#include <gtest/gtest.h>

#include <tuple>

#include "dialogs/CommonProperties.h"
#include "dialogs/Forms.h"
#include "dialogs/frmBranch.h"
#include "dialogs/frmFind.h"
#include "dialogs/frmPLC.h"
#include "dialogs/frmReplace.h"
#include "dialogs/frmSetts.h"

class FakeForms : public Forms {
 public:
    /// Sets what the user does whenever a form of this type is shown. A form without such a
    /// function fails the test.
    ///
    ///     forms.whenShown<frmPLC>([](frmPLC& form) { form.cmdApply_Click(); });
    template <typename Form>
    void whenShown(std::function<void(Form&)> user) {
        std::get<std::function<void(Form&)>>(users_) = std::move(user);
    }

    /// The same for every form.
    void whenAnyIsShown(const auto& user) {
        std::apply([&](auto&... each) { ((each = user), ...); }, users_);
    }

    /// Called in each modal dialog before the user acts.
    std::function<void()> whileOpen = [] {};

    int aboutShown = 0;
    /// The find dialog, while it is open.
    frmFind* find = nullptr;

    void showModal(frmItems& form) override { playUser(form); }
    void showModal(CommonProperties& form) override { playUser(form); }
    void showModal(frmPLC& form) override { playUser(form); }
    void showModal(frmBranch& form) override { playUser(form); }
    void showModal(frmSetts& form) override { playUser(form); }
    void showModal(frmReplace& form) override { playUser(form); }
    void show(frmFind& form) override { find = &form; }
    void close(frmFind& /*form*/) override { find = nullptr; }
    void showAbout() override {
        ++aboutShown;
        whileOpen();
    }

 private:
    template <typename Form>
    void playUser(Form& form) {
        const auto user =
            std::get<std::function<void(Form&)>>(users_);  // a copy, because it may set another one
        whileOpen();
        if (!user) ADD_FAILURE() << "No user is set for the dialog " << Form::caption;
        if (user) user(form);
    }

    template <typename... Form>
    using Users = std::tuple<std::function<void(Form&)>...>;
    Users<frmItems, CommonProperties, frmPLC, frmBranch, frmSetts, frmReplace> users_;
};
