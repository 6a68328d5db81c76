#include "store/database_saving.h"

#include "base/hex_text.h"
#include "store/backup_database.h"
#include "store/database_index.h"

namespace corvalence::store {

void saveDatabase(Vault& vault, OpenDatabaseContext& context,
                  const std::function<void(crypto::SealWriter&)>& content) {
    crypto::TemporaryFile beside = vault.working.createSave(context.path());
    crypto::Md5 md5;
    crypto::SealWriter writer(beside.file(), vault.session.key, crypto::PathIV(context.path()), &md5);
    content(writer);
    writer.finish();
    beside.close();

    DatabaseIndex index(vault);
    const std::string oldDigest = context.record.fileDigest;
    const std::string newDigest = base::hexText(md5.finish());
    index.updateDigest(context.path(), newDigest);
    try {
        beside.moveTo(context.path());
    } catch (const base::FileFailure&) {
        // The index must name the file that stands there; if even that fails, the next start finds the new
        // one.
        try {
            index.updateDigest(context.path(), oldDigest);
        } catch (const base::FileFailure&) {
            beside.abandon();
        }
        throw;
    }
    context.record.fileDigest = newDigest;
    try {
        writeBackupDatabase(vault, context.path());
    } catch (const base::FileFailure&) {
        beside.abandon();  // the save is done; the next start makes up for its copy
        throw;
    }
    beside.release();
}

}  // namespace corvalence::store
