// SPDX-License-Identifier: MIT
// Services 81 to 98: the form that a plug-in builds. Every call but Dialog_Begin and Dialog_Print
// needs an active form; the Add calls need an option and a label.
#include "pluginhost/tHostTable.h"

#include "pluginhost/tPluginDialogForm.h"
#include "support/tConsole.h"

#include <cstdarg>
#include <cstdio>

static constexpr size_t PRINT_SIZE = 8192;

static std::unique_ptr<cPluginDialogForm> g_form; // the active one
static bool g_running = false;                    // g_form is, inside Dialog_End
static cPluginDialogFactory g_factory = nullptr;

void setPluginDialogFactory(cPluginDialogFactory factory) {
    g_factory = factory;
    if (!factory && !g_running)
        g_form.reset();
}

static cPluginDialogForm* formFor(const char* service) {
    if (!g_form)
        Error("%s called with no active dialog", service);
    return g_form.get();
}

static cPluginDialogForm* formToAdd(const char* service, const char* option, const char* label) {
    cPluginDialogForm* form = formFor(service);
    if (!form || (option && label))
        return form;
    Error("%s called with bad parameters", service);
    return nullptr;
}

// ---- Life

static void begin(const char* title) {
    if (g_form) {
        Error("can't start new dialog while the previous is active");
        return;
    }
    if (!g_factory) {
        Error("plug-in dialogs are not available");
        return;
    }
    g_form = g_factory(title ? title : "");
}

static void initExternalCommand(const char* buttonText, const char* program) {
    if (cPluginDialogForm* form = formFor("Dialog_InitExternalCommand"))
        form->initExternalCommand(buttonText, program);
}

static void initInternalCommand(const char* buttonText, void (*function)()) {
    if (cPluginDialogForm* form = formFor("Dialog_InitInternalCommand"))
        form->initInternalCommand(buttonText, function);
}

static void setProgress(int32_t value, int32_t maximum) {
    if (cPluginDialogForm* form = formFor("Dialog_SetProgress"))
        form->setProgress(value, maximum);
}

static void end() {
    cPluginDialogForm* form = formFor("Dialog_End");
    if (!form || g_running)
        return;
    g_running = true;
    form->run();
    g_running = false;
    g_form.reset();
}

// ---- Controls

static void addTextEdit(const char* option, const char* label, const char* value, uint32_t flags) {
    if (cPluginDialogForm* form = formToAdd("Dialog_AddTextEdit", option, label))
        form->addTextEdit(option, label, value, flags);
}

static void addCheckBox(const char* option, const char* label, int32_t checked, uint32_t flags) {
    if (cPluginDialogForm* form = formToAdd("Dialog_AddCheckBox", option, label))
        form->addCheckBox(option, label, checked != 0, flags);
}

static void addRadioBox(const char* option, const char* label, int32_t yes, uint32_t flags) {
    if (cPluginDialogForm* form = formToAdd("Dialog_AddRadioBox", option, label))
        form->addRadioBox(option, label, yes != 0, flags);
}

static void addSpinBox(const char* option, const char* label, int32_t value, int32_t minimum,
                       int32_t maximum, int32_t step, uint32_t flags) {
    if (cPluginDialogForm* form = formToAdd("Dialog_AddSpinBox", option, label))
        form->addSpinBox(option, label, value, minimum, maximum, step, flags);
}

static void addSpinBoxFloat(const char* option, const char* label, float value, float minimum,
                            float maximum, float step, uint32_t flags) {
    if (cPluginDialogForm* form = formToAdd("Dialog_AddSpinBoxFloat", option, label))
        form->addSpinBoxFloat(option, label, value, minimum, maximum, step, flags);
}

static void addComboBox(const char* option, const char* label, int32_t index, const char* items,
                        uint32_t flags) {
    if (cPluginDialogForm* form = formToAdd("Dialog_AddComboBox", option, label))
        form->addComboBox(option, label, index, items, flags);
}

static void addFileEdit(const char* option, const char* label, const char* value,
                        const char* filter, uint32_t flags) {
    if (cPluginDialogForm* form = formToAdd("Dialog_AddFileEdit", option, label))
        form->addFileEdit(option, label, value, filter, flags);
}

static void addFileList(const char* option, const char* label, const char* value,
                        const char* filter, uint32_t flags) {
    if (cPluginDialogForm* form = formToAdd("Dialog_AddFileList", option, label))
        form->addFileList(option, label, value, filter, flags);
}

static void addDirectoryEdit(const char* option, const char* label, const char* value,
                             uint32_t flags) {
    if (cPluginDialogForm* form = formToAdd("Dialog_AddDirectoryEdit", option, label))
        form->addDirectoryEdit(option, label, value, flags);
}

// ---- Values and output

static void queryArgument(const char* option, char* out, int32_t size) {
    if (out && size > 0)
        out[0] = 0;
    cPluginDialogForm* form = formFor("Dialog_QueryArgument");
    if (form && option && out && size > 0)
        form->queryArgument(option, out, size);
}

static int32_t queryArgumentInt(const char* option) {
    cPluginDialogForm* form = formFor("Dialog_QueryArgumentInt");
    return form && option ? form->queryArgumentInt(option) : 0;
}

static float queryArgumentFloat(const char* option) {
    cPluginDialogForm* form = formFor("Dialog_QueryArgumentFloat");
    return form && option ? form->queryArgumentFloat(option) : 0.0f;
}

static void print(const char* format, ...) TP_PRINTF;

static void print(const char* format, ...) {
    if (!g_form || !format)
        return;
    static char text[PRINT_SIZE];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof text, format, args);
    va_end(args);
    g_form->print(text);
}

void fillDialogServices(cHostServices& table) {
    table.Dialog_Begin = begin;
    table.Dialog_InitExternalCommand = initExternalCommand;
    table.Dialog_InitInternalCommand = initInternalCommand;
    table.Dialog_SetProgress = setProgress;
    table.Dialog_AddTextEdit = addTextEdit;
    table.Dialog_AddCheckBox = addCheckBox;
    table.Dialog_AddRadioBox = addRadioBox;
    table.Dialog_AddSpinBox = addSpinBox;
    table.Dialog_AddSpinBoxFloat = addSpinBoxFloat;
    table.Dialog_AddComboBox = addComboBox;
    table.Dialog_AddFileEdit = addFileEdit;
    table.Dialog_AddFileList = addFileList;
    table.Dialog_AddDirectoryEdit = addDirectoryEdit;
    table.Dialog_QueryArgument = queryArgument;
    table.Dialog_QueryArgumentInt = queryArgumentInt;
    table.Dialog_QueryArgumentFloat = queryArgumentFloat;
    table.Dialog_End = end;
    table.Dialog_Print = print;
}
