// SPDX-License-Identifier: MIT
// A form that a plug-in builds at run time through the Dialog_ services. The services check their
// arguments and the one active form; the form itself lies with the dialogs, which set the factory
// at start-up.
#pragma once

#include <cstdint>
#include <memory>

class cPluginDialogForm {
public:
    virtual ~cPluginDialogForm() = default;

    virtual void initExternalCommand(const char* buttonText, const char* program) = 0;
    virtual void initInternalCommand(const char* buttonText, void (*function)()) = 0;
    virtual void setProgress(int value, int maximum) = 0;
    virtual void addTextEdit(const char* option, const char* label, const char* value,
                             uint32_t flags) = 0;
    virtual void addCheckBox(const char* option, const char* label, bool checked,
                             uint32_t flags) = 0;
    virtual void addRadioBox(const char* option, const char* label, bool yes, uint32_t flags) = 0;
    virtual void addSpinBox(const char* option, const char* label, int value, int minimum,
                            int maximum, int step, uint32_t flags) = 0;
    virtual void addSpinBoxFloat(const char* option, const char* label, float value, float minimum,
                                 float maximum, float step, uint32_t flags) = 0;
    virtual void addComboBox(const char* option, const char* label, int index, const char* items,
                             uint32_t flags) = 0;
    virtual void addFileEdit(const char* option, const char* label, const char* value,
                             const char* filter, uint32_t flags) = 0;
    virtual void addFileList(const char* option, const char* label, const char* value,
                             const char* filter, uint32_t flags) = 0;
    virtual void addDirectoryEdit(const char* option, const char* label, const char* value,
                                  uint32_t flags) = 0;
    virtual void queryArgument(const char* option, char* out, int size) = 0;
    virtual int queryArgumentInt(const char* option) = 0;
    virtual float queryArgumentFloat(const char* option) = 0;
    virtual void print(const char* text) = 0;
    virtual void run() = 0; // modal
};

using cPluginDialogFactory = std::unique_ptr<cPluginDialogForm> (*)(const char* title);

void setPluginDialogFactory(cPluginDialogFactory factory); // null: forms are not available
