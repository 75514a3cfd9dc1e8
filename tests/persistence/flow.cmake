# Transactions, their behaviour across processes, and backups.
brindlet_add_test(persistence_flow_tests
  TaskStoreTransactionTest.cpp
  TaskStoreProcessTest.cpp
  DataBackupManagerTest.cpp
)
