#include "support/gallery.h"

#include <chrono>

namespace vx3::tests {

namespace {

constexpr int32_t windowId = 4711;
constexpr int32_t timerPeriod = 100;
constexpr int32_t coreMessage = 1234567;
constexpr int32_t postedCode = 0x74657374; // 'test'
constexpr VX3Rectangle renamePlace = { 300, 300, 420, 320 };

const char* ReasonText(int32_t reason)
{
    return reason == VX3_EDIT_CHANGED ? "changed" : reason == VX3_EDIT_CLOSED ? "closed" : "cancelled";
}

} // namespace

Gallery::Gallery(const VX3Host* ownHost)
    : host(*ownHost)
    , gui(*ownHost->gui)
    , bandArea(host, log, GalleryArea::Kind::Band)
    , dropArea(host, log, GalleryArea::Kind::Drop)
    , tree(host, log)
{
    for (Part* part : { &window, &inner, &modal })
        part->handle = gui.dialog->create(part, &Table());
    bandArea.SetMenu([this](int32_t, int32_t) { ShowAreaMenu(); });
}

Gallery::~Gallery()
{
    host.thread->free(thread);
    for (Part* part : { &modal, &inner, &window })
        gui.dialog->free(part->handle);
}

const VX3DialogTable& Gallery::Table()
{
    static constexpr VX3DialogTable table = {
        [](void* object) -> VX3Bool {
            Part& part = PartOf(object);
            part.gallery->log.Add(std::string(part.name) + ": createLayout");
            (part.gallery->*part.createLayout)();
            return 1;
        },
        [](void* object) -> VX3Bool {
            Part& part = PartOf(object);
            part.gallery->log.Add(std::string(part.name) + ": initValues");
            (part.gallery->*part.initValues)();
            return 1;
        },
        [](void* object, int32_t id, const VX3Container* event) -> VX3Bool {
            PartOf(object).gallery->Command(PartOf(object), id, event);
            return 1;
        },
        [](void* object) {
            Gallery& gallery = *PartOf(object).gallery;
            gallery.log.Add("timer " + std::to_string(++gallery.ticks));
        },
        [](void* object, int32_t id, const VX3Container* message) {
            Part& part = PartOf(object);
            const VX3Host& host = part.gallery->host;
            if (id == coreMessage)
                part.gallery->log.Add(std::string(part.name) + ": core message "
                                      + std::to_string(host.container->getInt64(message, VX3_CORE_FIRST, 0)) + " "
                                      + std::to_string(host.container->getInt64(message, VX3_CORE_SECOND, 0)));
        },
        [](void* object, int32_t code, const VX3Container* message, VX3Container*) -> VX3Bool {
            return PartOf(object).gallery->Message(PartOf(object), code, message);
        },
        [](void* object) -> VX3Bool {
            Part& part = PartOf(object);
            part.gallery->log.Add(std::string(part.name) + ": askClose");
            return part.gallery->refusesClose;
        },
        [](void* object) { PartOf(object).gallery->log.Add(std::string(PartOf(object).name) + ": destroyWindow"); },
    };
    return table;
}

bool Gallery::Open()
{
    const VX3WindowPlace place = { windowId, 0, -1, -1, 0, 0 };
    return gui.dialog->open(window.handle, &place) != 0;
}

// What it is told.

void Gallery::Command(Part& part, int32_t id, const VX3Container* event)
{
    const double value = host.container->getFloat(event, VX3_COMMAND_VALUE, 0);
    const bool isDragged = host.container->getBool(event, VX3_COMMAND_DRAGGED, 0) != 0;
    const bool isText = id == idEdit || id == idMultiline || id == idFreeCombo || id == idInnerEdit || id == idModalEdit;
    HostText text(host);
    if (isText)
        gui.gadget->getText(part.handle, id, text.Get());
    log.Add(std::string(part.name) + ": command " + std::to_string(id) + " value " + NumberText(value) + (isDragged ? " dragged" : "")
            + (isText ? " text \"" + text.Utf8() + "\"" : ""));
    if (id == idModalAccept || id == idModalRefuse)
        gui.dialog->close(modal.handle, id);
    else
        WindowCommand(id);
}

void Gallery::WindowCommand(int32_t id)
{
    switch (id) {
    case idModal: return RunModal();
    case idRename: return StartRename();
    case idMessage: return gui.box->show(VX3_BOX_ERROR, HostText(host, "The paint is still wet").Get());
    case idQuestion: return Ask();
    case idChoose: return Choose();
    default: return;
    }
}

VX3Bool Gallery::Message(Part& part, int32_t code, const VX3Container* message)
{
    switch (code) {
    case VX3_GUI_DRAG: DragMessage(part, message); return 1;
    case VX3_GUI_RESIZED: // how often and how large depends on the measures of a host
    case VX3_GUI_SCROLLED:
    case VX3_GUI_WINDOW_SIZE:
    case VX3_GUI_LAYOUT_RESTORE:
    case VX3_GUI_LAYOUT_SAVE:
    case VX3_GUI_NAME: return 0;
    case VX3_GUI_KEY:
        log.Add(std::string(part.name) + ": key " + std::to_string(host.container->getInt32(message, VX3_INPUT_CHANNEL, 0)));
        return &part == &window; // Escape closes the modal one
    case VX3_GUI_WEIGHTS:
        log.Add(std::string(part.name) + ": weights of " + std::to_string(host.container->getInt32(message, VX3_KEY_GADGET, 0)));
        return 1;
    default: log.Add(std::string(part.name) + ": message " + CodeText(code)); return 0;
    }
}

void Gallery::DragMessage(const Part& part, const VX3Container* message)
{
    const VX3ContainerServices& container = *host.container;
    const bool isDrop = container.getBool(message, VX3_DRAG_KEY_DROP, 0) != 0;
    const bool isEnd = container.getBool(message, VX3_DRAG_KEY_END, 0) != 0;
    const int32_t gadget = container.getInt32(message, VX3_DRAG_KEY_GADGET, 0);
    const int32_t x = container.getInt32(message, VX3_DRAG_KEY_X, 0);
    const int32_t y = container.getInt32(message, VX3_DRAG_KEY_Y, 0);
    std::string where = gadget ? " gadget " + std::to_string(gadget) : "";
    if (gadget == idDropArea)
        where += " at " + dropArea.LocalText(x, y);
    log.Add(std::string(part.name) + ": drag " + std::to_string(container.getInt32(message, VX3_DRAG_KEY_TYPE, 0))
            + (isDrop      ? " dropped"
                   : isEnd ? " ended"
                           : " over")
            + (isEnd ? "" : where) + " qualifiers " + std::to_string(container.getInt32(message, VX3_DRAG_KEY_QUALIFIERS, 0)));
    gui.menu->setDragResult(gadget == idDropArea ? VX3_CURSOR_COPY : VX3_CURSOR_REFUSED);
}

void Gallery::ShowAreaMenu()
{
    HostContainer more(host);
    more.SetText(1, "More");
    more.SetText(8, "Deep");
    HostContainer menu(host);
    menu.SetText(5, "Plain");
    menu.SetText(6, "Ticked&c&");
    menu.SetText(20, "");
    menu.SetText(7, "Not now&d&");
    host.container->setContainer(menu.Get(), 21, more.Get());
    log.Add("menu: " + std::to_string(gui.menu->popup(window.handle, menu.Get(), -1, -1)));
}

void Gallery::RunModal()
{
    gui.dialog->setTitle(modal.handle, HostText(host, "A question of colour").Get());
    const VX3WindowPlace place = { windowId + 1, 0, -1, -1, 0, 0 };
    log.Add("modal: " + std::to_string(gui.dialog->openModal(modal.handle, &place)));
}

void Gallery::StartRename()
{
    gui.menu->popupEdit(window.handle, &renamePlace, HostText(host, "old name").Get(), PopupEdited, this);
}

void Gallery::PopupEdited(void* user, int32_t reason, const VX3String* text)
{
    Gallery& gallery = *static_cast<Gallery*>(user);
    gallery.log.Add(std::string("popup edit ") + ReasonText(reason) + " \"" + HostText::Utf8Of(gallery.host, text) + "\"");
}

void Gallery::Ask()
{
    log.Add(std::string("question: ") + (gui.box->ask(HostText(host, "Paint it blue?").Get()) ? "yes" : "no"));
}

void Gallery::Choose()
{
    VX3Path chosen = {};
    const VX3Bool isChosen =
        gui.box->choose(VX3_CHOOSE_FILE, HostText(host, "A picture").Get(), HostText(host, "*.png").Get(), nullptr, &chosen);
    HostText name(host);
    host.path->getLast(&chosen, name.Get());
    log.Add("chosen: " + (isChosen ? name.Utf8() : "nothing"));
    host.path->destruct(&chosen);
}

// What it does by itself.

bool Gallery::Do(int32_t deed)
{
    const VX3Rectangle end = { 0, bandAreaHeight, 0, 0 };
    switch (static_cast<GalleryDeed>(deed)) {
    case GalleryDeed::SetValues: SetValues(); break;
    case GalleryDeed::Scroll: gui.gadget->setVisiblePart(window.handle, idScroll, &end); break;
    case GalleryDeed::StartTimer: gui.dialog->setTimer(window.handle, timerPeriod); break;
    case GalleryDeed::StopTimer: gui.dialog->setTimer(window.handle, 0); break;
    case GalleryDeed::PostFromThread: PostFromThread(); break;
    case GalleryDeed::HideButton:
        isButtonShown = !isButtonShown;
        gui.gadget->show(window.handle, idModal, isButtonShown);
        gui.gadget->update(window.handle, 0);
        break;
    case GalleryDeed::Rebuild: RebuildFields(); break;
    case GalleryDeed::Detach:
        gui.dialog->detach(inner.handle);
        AttachInner();
        break;
    case GalleryDeed::FocusEdit:
        gui.gadget->focus(window.handle, idEdit);
        gui.gadget->selectText(window.handle, idEdit, 1, 2);
        break;
    case GalleryDeed::RefuseClose: refusesClose = !refusesClose; break;
    case GalleryDeed::CloseFromModule: gui.dialog->close(window.handle, 0); break;
    case GalleryDeed::FocusArea: gui.area->activate(dropArea.Handle()); break;
    case GalleryDeed::PostToSelf:
        gui.dialog->post(window.handle, postedCode);
        gui.area->post(dropArea.Handle(), postedCode);
        gui.area->post(dropArea.Handle(), postedCode); // waits already
        break;
    case GalleryDeed::ToggleBusy:
        isBusy = !isBusy;
        gui.menu->setCursor(isBusy ? VX3_CURSOR_BUSY : VX3_CURSOR_NORMAL);
        break;
    default: return false;
    }
    return true;
}

void Gallery::SetText(int32_t id, const char* text)
{
    gui.gadget->setText(window.handle, id, HostText(host, text).Get());
}

// No command follows from any of them.
void Gallery::SetValues()
{
    const VX3GadgetServices& gadget = *gui.gadget;
    const VX3FileDate date = { 2028, 2, 29, 0, 0, 0 };
    SetText(idText, "A new label");
    SetText(idEdit, "from the module");
    SetText(idMultiline, "one\ntwo");
    gadget.setValue(window.handle, idNumber, 99);
    gadget.setDate(window.handle, idDate, &date);
    gadget.setValue(window.handle, idCheck, 1);
    gadget.setValue(window.handle, idToggle, 1);
    gadget.setValue(window.handle, idCombo, 3);
    gadget.setValue(window.handle, idSlider, -5);
    gadget.setValue(window.handle, idProgress, 0.75);
    gadget.setValue(window.handle, idTabs, 0);
}

void Gallery::RebuildFields()
{
    gui.gadget->flush(window.handle, idFieldPage);
    CreateFieldPage();
    gui.gadget->update(window.handle, idFieldPage);
}

// Works for a while first, so that whoever waits for it must really wait.
void Gallery::PostMessage(void* object)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(30);
    while (std::chrono::steady_clock::now() < end) { }
    static_cast<Gallery*>(object)->host.message->postCore(coreMessage, 42, -7, nullptr);
}

void Gallery::PostFromThread()
{
    static constexpr VX3ThreadTable body = { nullptr, nullptr, PostMessage, nullptr };
    host.thread->free(thread);
    thread = host.thread->create(this, &body);
    host.thread->start(thread, 1, VX3_PRIORITY_NORMAL);
}

// What can be seen of it.

std::string Gallery::ValueOf(int32_t id) const
{
    double value = 0;
    return gui.gadget->getValue(window.handle, id, &value) ? NumberText(value) : "-";
}

std::string Gallery::TextOf(int32_t id) const
{
    HostText text(host);
    return gui.gadget->getText(window.handle, id, text.Get()) ? "\"" + text.Utf8() + "\"" : "-";
}

std::string Gallery::DescribeValues() const
{
    std::string lines = gui.dialog->isOpen(window.handle) ? "open\n" : "closed\n";
    for (int32_t id : { idText, idEdit, idMultiline, idFreeCombo, idReadOnly })
        lines += std::to_string(id) + " " + TextOf(id) + "\n";
    for (int32_t id : { idTabs, idNumber, idCheck, idToggle, idCombo, idSlider, idProgress })
        lines += std::to_string(id) + " " + ValueOf(id) + "\n";
    VX3FileDate date = {};
    gui.gadget->getDate(window.handle, idDate, &date);
    return lines + std::to_string(idDate) + " " + std::to_string(date.year) + "-" + std::to_string(date.month) + "-"
        + std::to_string(date.day) + "\n";
}

std::string Gallery::Dump(const std::string& what)
{
    if (what == "list")
        return log.Take();
    if (what == "tree")
        return tree.Describe();
    return what == "state" ? DescribeValues() : std::string();
}

} // namespace vx3::tests
