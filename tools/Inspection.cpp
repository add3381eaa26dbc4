#include "tools/Inspection.h"

namespace tovi {
namespace {

std::vector<ApplicationFile> filesOf(CardAccess& card) {
    std::vector<ApplicationFile> files = readApplicationFiles(card.files(), card.place());
    for (ApplicationFile& file : files) file.recordCapacity = card.recordCapacity(file.file.path);
    return files;
}

/// A file that cannot be selected counts as transparent; what it holds nobody can tell.
bool isLinearFile(ISCardOS& os, const Blob& path) {
    try {
        const FileStructure structure = os.selectFile(path).structure;
        return structure == FileStructure::linearFixed ||
               structure == FileStructure::linearVariable;
    } catch (const SmartcardException&) {
        return false;
    }
}

/// Adds the model and its findings; that it cannot be read is one itself.
void addModel(CardAccess& card, Inspection& inspection) {
    ContainerPointer model = makeContainer(card.applicationPath());
    try {
        model->readFromCard(&card.os());
    } catch (const Exception& exception) {
        inspection.modelError = ErrorReport::of(exception);
        inspection.findings.push_back(
            {.kind = "unreadable-application", .message = inspection.modelError->line()});
        return;
    }
    for (Finding& finding : findingsOfModel(
             *model, [&](const Blob& path) { return isLinearFile(card.files(), path); })) {
        inspection.findings.push_back(std::move(finding));
    }
    inspection.model = std::move(model);
}

}  // namespace

Inspection inspect(CardAccess& card) {
    Inspection inspection;
    inspection.files = filesOf(card);
    inspection.findings = findingsOfFiles(inspection.files, card.rootPath());
    addModel(card, inspection);
    return inspection;
}

}  // namespace tovi
