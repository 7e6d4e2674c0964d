include b.dat
for-a:
	@echo "b after $(IS-A_NAME)"
