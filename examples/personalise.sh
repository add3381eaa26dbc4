tovi init my-card --serial 0102030405060708              # an empty application
tovi --card my-card apply examples/personalise.json      # PINs, keys, certificates, data objects
tovi --card my-card list
tovi --card my-card delete 10                            # one object, by the record number that list shows
