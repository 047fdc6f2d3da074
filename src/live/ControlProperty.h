#pragma once

// Shows a control of a screen to QML as a property under the control's own name, so that the tools know its
// type and find a name that is mistyped. KESTRIX_CONTROL is for a member of that name, KESTRIX_CONTROL_AT for
// any other.
// NOLINTBEGIN(bugprone-macro-parentheses): what stands for a type or begins a declaration
#define KESTRIX_CONTROL(Type, name) KESTRIX_CONTROL_AT(Type, name, name)
#define KESTRIX_CONTROL_AT(Type, name, member)                            \
  private:                                                                \
    Q_PROPERTY(kestrix::ui::Type* name READ name##Control CONSTANT FINAL) \
                                                                          \
  public:                                                                 \
    kestrix::ui::Type* name##Control() {                                  \
        return &(member);                                                 \
    }
// NOLINTEND(bugprone-macro-parentheses)
